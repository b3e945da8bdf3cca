// Some songs as the library has shown them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/Library.h"
#include "host/library/SongKeys.h"

namespace tavrel::host {

// Pairs of keys and texts. The library takes calls from one thread at a time; what stands in a block, another thread
// may read while the library shows further songs to this one.
class SongBlock {
 public:
  // Forgets the songs, not the room that they took.
  void Clear() noexcept;
  // Adds a pair to the song that is shown. text: null where the value has none.
  void Add(std::size_t key, const char* text);
  void EndSong() { ends_.push_back(pairs_.size()); }

  [[nodiscard]] std::size_t Songs() const noexcept { return ends_.size(); }
  // Two full ones stand in the memory next to a processor.
  [[nodiscard]] bool IsFull() const noexcept {
    return ends_.size() >= kMostSongs || texts_.size() >= kMostBytes;
  }

  // Calls visit(key, text, hasText) for each pair of a song, in the file's order. A zero byte stands behind each text.
  template <typename Visit>
  void ForEachPair(std::size_t song, Visit visit) const {
    for (std::size_t i = song == 0 ? 0 : ends_[song - 1]; i < ends_[song]; ++i) {
      const Pair& pair = pairs_[i];
      visit(std::size_t{pair.key}, std::string_view(texts_.data() + pair.from, pair.size),
            pair.hasText);
    }
  }

 private:
  static constexpr std::size_t kMostSongs = 1024;
  static constexpr std::size_t kMostBytes = std::size_t{1} << 19;

  struct Pair {
    std::size_t from;  // in the texts
    std::size_t size;
    std::uint32_t key;
    bool hasText;
  };

  std::string texts_;
  std::vector<Pair> pairs_;
  std::vector<std::size_t> ends_;  // of the pairs of each song
};

// Has the library show songs.
class SongWalk {
 public:
  // Beside the fields the track ID is read. Its number is:
  static constexpr std::size_t kTrackId = kFieldCount;

  SongWalk(const LibraryFunctions& library, const FieldSet& wanted);
  SongWalk(const SongWalk&) = delete;
  SongWalk& operator=(const SongWalk&) = delete;

  // Adds a song to the block. position: must be one of the playlist's. Cost: one walk over the song's properties.
  void Show(PlaylistRecord* playlist, std::int32_t position, SongBlock& block);

 private:
  void Take(const char* key, const char* text, SongBlock& block);

  const LibraryFunctions& library_;
  FieldSet wanted_;
  OtherKeys others_;  // also some that nobody wants, so that they are known when they come again
  SongKeys keys_;
};

}  // namespace tavrel::host
