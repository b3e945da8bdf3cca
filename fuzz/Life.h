// A life of arbitrary calls with arbitrary arguments, as far as the interface lets a host make them: every
// exported function, callbacks that call again, the import of ringtones through a stand-in runner.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "agent/Exports.h"
#include "fuzz/Choices.h"
#include "fuzz/Surroundings.h"

namespace tavrel::fuzz {

inline constexpr std::int32_t kGroups = 3;

// One input: what it has open, and the calls that it makes. They stand in a file for each theme.
class Life {
 public:
  // number: how many lives there were before.
  Life(const Surroundings& surroundings, std::string_view input, std::size_t number);
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;
  ~Life();

  void Run();

 private:
  void Call();

  // Lists, songs and their properties.
  void ListPlaylist();
  void ReadSong();
  void ReadProperty();

  // Artwork, and the import of ringtones.
  void OpenOrCloseArtwork();
  void ReadArtwork();
  void CloseAll();
  void Import();

  void Search();

  // What other exported functions are made of.
  void Read();
  void ReadDictionary();
  void FillPlaylist();
  void Rebuild();
  void LoadAnew();

  PlaylistRecord* AnyPlaylist();
  // Of the loaded document, or none.
  const TBXMLElement* AnyElement();

  // Callbacks.
  static std::int32_t Look(const char* key, const char* text, const char* type, void* context);
  static std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context);
  static std::int32_t Hear(std::int32_t index, void* context);

  const Surroundings& surroundings_;
  Choices choices_;
  std::size_t number_;
  std::array<ArtworkHandle*, 4> artwork_ = {};
  int depth_ = 0;  // of callbacks
};

}  // namespace tavrel::fuzz
