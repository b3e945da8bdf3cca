// The fields of songs that the page tells, as columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/page/Columns.h"
#include "host/page/NumberRoom.h"
#include "host/page/SongBlock.h"

namespace tavrel::host {

enum class ColumnKind : std::uint8_t { Text, Number, Seconds, Day, Kilobytes, Rating, Flag };

// "text", "number", …, as the page's scripts know them.
[[nodiscard]] std::string_view KindName(ColumnKind kind);

// One field of all songs. A number stands one higher than it is, so that 0 is none: seconds, days since
// the beginning of 1970, kilobytes of 1024, ratings from 0 to 100 that somebody has given, 1 for a flag.
struct PageColumn {
  Field field;
  ColumnKind kind;
  TextColumn texts = {};
  std::span<std::int64_t> numbers = {};  // of the texts, too
  PackedNumbers packed = {};
  std::string json = {};  // what the payload says of it

  // All songs have come. What none of them has is neither packed nor told.
  void End();
  // Whether any song has it.
  [[nodiscard]] bool IsUsed() const noexcept;
};

// The columns of what the library file says of songs.
class ColumnMaker {
 public:
  // songs: how many will come. Room is taken for numbers that last as long.
  ColumnMaker(std::size_t songs, NumberRoom& room);
  // How many numbers it takes room for.
  [[nodiscard]] static std::size_t NumbersOf(std::size_t songs) noexcept;

  // What it reads of a song.
  [[nodiscard]] FieldSet Fields() const;

  // The next songs.
  void Add(const SongBlock& songs);

  // In the order in which the page offers them.
  [[nodiscard]] std::vector<PageColumn> Take();

 private:
  void AddTexts(const SongBlock& songs, PageColumn& column);

  std::vector<PageColumn> columns_;
  std::size_t songs_ = 0;
  std::vector<SongText> texts_;  // of one column
};

}  // namespace tavrel::host
