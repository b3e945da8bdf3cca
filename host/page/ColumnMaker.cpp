#include "host/page/ColumnMaker.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

#include "host/library/FieldTexts.h"
#include "host/output/Format.h"
#include "host/page/PayloadJson.h"

namespace tavrel::host {
namespace {

struct Kept {
  Field field;
  ColumnKind kind;
};

// In the order in which the page offers them.
constexpr std::array kKept{
    Kept{Field::Name, ColumnKind::Text},         Kept{Field::Artist, ColumnKind::Text},
    Kept{Field::AlbumArtist, ColumnKind::Text},  Kept{Field::Album, ColumnKind::Text},
    Kept{Field::Composer, ColumnKind::Text},     Kept{Field::Genre, ColumnKind::Text},
    Kept{Field::Grouping, ColumnKind::Text},     Kept{Field::Year, ColumnKind::Number},
    Kept{Field::Disc, ColumnKind::Number},       Kept{Field::Track, ColumnKind::Number},
    Kept{Field::Seconds, ColumnKind::Seconds},   Kept{Field::Rating, ColumnKind::Rating},
    Kept{Field::Plays, ColumnKind::Number},      Kept{Field::Skips, ColumnKind::Number},
    Kept{Field::LastPlayed, ColumnKind::Day},    Kept{Field::Added, ColumnKind::Day},
    Kept{Field::Released, ColumnKind::Day},      Kept{Field::Comments, ColumnKind::Text},
    Kept{Field::Bpm, ColumnKind::Number},        Kept{Field::BitRate, ColumnKind::Number},
    Kept{Field::SampleRate, ColumnKind::Number}, Kept{Field::Size, ColumnKind::Kilobytes},
    Kept{Field::Kind, ColumnKind::Text},         Kept{Field::Series, ColumnKind::Text},
    Kept{Field::Season, ColumnKind::Number},     Kept{Field::Episode, ColumnKind::Number},
    Kept{Field::Loved, ColumnKind::Flag},        Kept{Field::Disabled, ColumnKind::Flag},
    Kept{Field::Compilation, ColumnKind::Flag},  Kept{Field::Explicit, ColumnKind::Flag},
    Kept{Field::Podcast, ColumnKind::Flag},      Kept{Field::Movie, ColumnKind::Flag},
    Kept{Field::TvShow, ColumnKind::Flag},
};

constexpr std::int64_t kNone = -1;

// The days from the beginning of 1970 to "2009-11-05T08:13:42Z"; kNone for a day that never was.
std::int64_t DayOf(std::string_view date) noexcept {
  const auto part = [date](std::size_t from, std::size_t size) {
    int number = 0;
    for (const char digit : date.substr(from, size)) number = number * 10 + (digit - '0');
    return number;
  };
  const std::chrono::year_month_day day(std::chrono::year(part(0, 4)),
                                        std::chrono::month(static_cast<unsigned>(part(5, 2))),
                                        std::chrono::day(static_cast<unsigned>(part(8, 2))));
  if (!day.ok()) return kNone;
  return std::chrono::sys_days(day).time_since_epoch().count();
}

std::int64_t NumberOf(std::string_view text, ColumnKind kind) {
  if (kind == ColumnKind::Day) return IsDate(text) ? DayOf(text) : kNone;
  if (kind == ColumnKind::Flag) return text == "true" ? 1 : kNone;
  const std::optional<std::int64_t> number = NumberIn(text);
  if (!number) return kNone;
  const std::int64_t notNegative = std::max<std::int64_t>(*number, 0);
  if (kind == ColumnKind::Seconds) return Rounded(notNegative, 1000);
  return kind == ColumnKind::Kilobytes ? Rounded(notNegative, 1024) : *number;
}

// As the columns have it: one higher, never below none, and exact as a number of a script.
std::int64_t Stored(std::int64_t number) noexcept {
  constexpr std::int64_t kLargestExact = (std::int64_t{1} << 53) - 2;
  return std::clamp(number, kNone, kLargestExact) + 1;
}

// first: the number of the block's first song.
void AddNumbers(const SongBlock& songs, std::size_t first, PageColumn& column) {
  const std::span<std::int64_t> numbers = column.numbers.subspan(first);
  songs.ForEachText(IndexOf(column.field),
                    [numbers, kind = column.kind](std::size_t song, std::string_view text) {
                      numbers[song] = Stored(NumberOf(text, kind));
                    });
  if (column.kind != ColumnKind::Rating) return;
  songs.ForEachText(IndexOf(Field::RatingComputed),
                    [numbers](std::size_t song, std::string_view text) {
                      if (text == "true") numbers[song] = Stored(kNone);
                    });
}

// As JSON.
std::string Described(const PageColumn& column) {
  const TextColumn& texts = column.texts;
  std::size_t room = 200;
  for (std::size_t i = 0; i < texts.TextCount(); ++i) room += texts.Text(i).size() + 3;
  std::string json;
  json.reserve(room);
  json.append("{\"field\":\"").append(FactsOf(column.field).name);
  json.append("\",\"kind\":\"").append(KindName(column.kind)).append(1, '"');
  if (column.kind == ColumnKind::Text) {
    AppendTexts(json, "texts", texts.TextCount(),
                [&texts](std::size_t i) { return texts.Text(i); });
  }
  AppendNumbers(json, column.packed);
  json += '}';
  return json;
}

}  // namespace

std::string_view KindName(ColumnKind kind) {
  constexpr std::array<std::string_view, 7> kNames{"text",      "number", "seconds", "day",
                                                   "kilobytes", "rating", "flag"};
  return kNames.at(static_cast<std::size_t>(kind));
}

void PageColumn::End() {
  if (!IsUsed()) return;
  packed = Pack(numbers);
  json = Described(*this);
}

bool PageColumn::IsUsed() const noexcept {
  if (kind == ColumnKind::Text) return texts.TextCount() > 1;
  return std::any_of(numbers.begin(), numbers.end(),
                     [](std::int64_t number) { return number != 0; });
}

ColumnMaker::ColumnMaker(std::size_t songs, NumberRoom& room) {
  for (const Kept& kept : kKept) {
    const std::span<std::int64_t> numbers = room.Take(songs);
    columns_.push_back({kept.field, kept.kind, TextColumn(numbers), numbers});
  }
}

std::size_t ColumnMaker::NumbersOf(std::size_t songs) noexcept {
  return kKept.size() * songs;
}

FieldSet ColumnMaker::Fields() const {
  FieldSet fields;
  fields.set(IndexOf(Field::RatingComputed));
  for (const PageColumn& column : columns_) fields.set(IndexOf(column.field));
  return fields;
}

void ColumnMaker::Add(const SongBlock& songs) {
  for (PageColumn& column : columns_) {
    if (column.kind == ColumnKind::Text) {
      AddTexts(songs, column);
    } else {
      AddNumbers(songs, songs_, column);
    }
  }
  songs_ += songs.Songs();
}

void ColumnMaker::AddTexts(const SongBlock& songs, PageColumn& column) {
  texts_.clear();
  songs.ForEachText(IndexOf(column.field), [this](std::size_t song, std::string_view text) {
    texts_.push_back({songs_ + song, text});
  });
  column.texts.Add(texts_);
}

std::vector<PageColumn> ColumnMaker::Take() {
  for (PageColumn& column : columns_) column.End();
  return std::move(columns_);
}

}  // namespace tavrel::host
