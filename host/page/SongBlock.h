// Some songs as the library has shown them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/Library.h"
#include "host/library/SongKeys.h"

namespace tavrel::host {

// For each key the texts of the songs that have it. The library takes calls from one thread at a time; what stands in
// a block, other threads may read while the library shows further songs to this one.
class SongBlock {
 public:
  // A key is a field's number, or that of the track ID:
  static constexpr std::size_t kTrackId = kFieldCount;

  // Forgets the songs, not the room that they took.
  void Clear() noexcept;
  // Adds a pair to the song that is shown: the first of two equal keys counts. text: null where the value has none.
  void Add(std::size_t key, const char* text);
  void EndSong() noexcept { ++songs_; }

  [[nodiscard]] std::size_t Songs() const noexcept { return songs_; }
  // Two full ones stand in the memory next to a processor.
  [[nodiscard]] bool IsFull() const noexcept {
    return songs_ >= kMostSongs || texts_.size() >= kMostBytes;
  }

  // Calls visit(song, text) for each song that has a text for the key, in their order. Songs count from 0.
  template <typename Visit>
  void ForEachText(std::size_t key, Visit visit) const {
    for (const Value& value : values_[key]) {
      if (value.hasText) visit(std::size_t{value.song}, TextOf(value));
    }
  }

 private:
  friend class FieldReader;

  static constexpr std::size_t kMostSongs = 1024;
  static constexpr std::size_t kMostBytes = std::size_t{1} << 19;

  struct Value {
    std::size_t from;  // in the texts
    std::size_t size;
    std::uint32_t song;
    bool hasText;
  };

  [[nodiscard]] std::string_view TextOf(const Value& value) const noexcept {
    return {texts_.data() + value.from, value.size};
  }

  std::string texts_;  // a zero byte stands behind each of them
  std::array<std::vector<Value>, kTrackId + 1> values_;
  std::size_t songs_ = 0;
};

// The texts of a field, of one song after the other.
class FieldReader {
 public:
  // The block is borrowed.
  FieldReader(const SongBlock& block, Field field) noexcept
      : block_(block), values_(block.values_[IndexOf(field)]) {}

  // None for a song that has none. Songs are asked for in their order. A zero byte stands behind the text.
  [[nodiscard]] std::optional<std::string_view> Of(std::size_t song) noexcept {
    while (next_ < values_.size() && values_[next_].song < song) ++next_;
    if (next_ == values_.size()) return std::nullopt;
    const SongBlock::Value& value = values_[next_];
    if (value.song != song || !value.hasText) return std::nullopt;
    return block_.TextOf(value);
  }

 private:
  const SongBlock& block_;
  const std::vector<SongBlock::Value>& values_;
  std::size_t next_ = 0;
};

// Has the library show songs.
class SongWalk {
 public:
  // Beside the fields the track ID is read.
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
