// A home folder with a library file and ringtones, and the library that is linked with the test,
// loaded from it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/State.h"
#include "library/playlists/PlaylistTable.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {

class RingtoneScene {
 public:
  RingtoneScene();  // a small library, no Ringtones folder, not loaded
  RingtoneScene(const RingtoneScene&) = delete;
  RingtoneScene& operator=(const RingtoneScene&) = delete;
  ~RingtoneScene();

  [[nodiscard]] const TemporaryFolder& home() const { return home_; }
  [[nodiscard]] std::string PathOf(std::string_view fileName) const;  // in the Ringtones folder

  void WriteLibrary(std::string_view text) const;
  void Put(std::string_view fileName) const;  // into the Ringtones folder
  void MakeFolder() const;                    // an empty Ringtones folder

  void Load();
  void Unload();

 private:
  TemporaryFolder home_;
  ScopedVariable homeVariable_;
  bool loaded_ = false;
};

struct Ringtone {
  std::string name;
  std::string location;
  friend bool operator==(const Ringtone&, const Ringtone&) = default;
};

// Prints it when a test fails.
void PrintTo(const Ringtone& ringtone, std::ostream* stream);

// The last playlist of the first group; null when there is none.
[[nodiscard]] PlaylistRecord* LastPlaylist();
// What GetSongInfo answers for each song, asked for the sizes and then for the texts; that the
// sizes are those of the texts is checked on the way.
[[nodiscard]] std::vector<Ringtone> Listed(PlaylistRecord* playlist);
[[nodiscard]] std::vector<std::string> ListedNames(PlaylistRecord* playlist);
// Whether every byte of a record but its name, its location and their sizes is zero.
[[nodiscard]] bool HasOnlyNameAndLocation(const TrackRecord& record);

}  // namespace tavrel::test
