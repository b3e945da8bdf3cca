#include "host/library/SongRecord.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>

#include "host/library/FieldTexts.h"
#include "host/library/KeptFailure.h"

namespace tavrel::host {
namespace {

// Digits that are written as to_chars() would write them, and too few to overflow: nearly all numbers.
bool IsPlainNumber(std::string_view text) noexcept {
  constexpr std::size_t kMostDigits = 18;
  if (text.empty() || text.size() > kMostDigits || (text[0] == '0' && text.size() > 1))
    return false;
  return std::all_of(text.begin(), text.end(),
                     [](char digit) { return digit >= '0' && digit <= '9'; });
}

bool IsJsonNumber(std::string_view text) noexcept {
  if (IsPlainNumber(text)) return true;
  const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
  const bool isPlain = digits.size() == 1 || !digits.starts_with('0');
  return isPlain && !text.starts_with('+') && NumberIn(text).has_value();
}

// Thousandths without zeros at their end: 245000 is "245", 245120 is "245.12".
std::string_view SecondsOf(std::int64_t milliseconds, std::array<char, 32>& room) noexcept {
  char* end = room.data();
  // Of the lowest number there is no positive one.
  const std::int64_t whole = milliseconds / 1000;
  std::int64_t rest = milliseconds % 1000;
  if (rest < 0) rest = -rest;
  if (milliseconds < 0 && whole == 0) *end++ = '-';
  end = std::to_chars(end, room.data() + room.size(), whole).ptr;
  if (rest != 0) {
    *end++ = '.';
    for (std::int64_t unit = 100; rest != 0; unit /= 10) {
      *end++ = static_cast<char>('0' + rest / unit);
      rest %= unit;
    }
  }
  return {room.data(), static_cast<std::size_t>(end - room.data())};
}

bool Exists(const std::string& path) noexcept {
  struct stat facts {};
  return ::stat(path.c_str(), &facts) == 0;
}

}  // namespace

FieldSet SetOf(std::initializer_list<Field> fields) {
  FieldSet set;
  for (const Field field : fields) set.set(IndexOf(field));
  return set;
}

// ---- The record ---------------------------------------------------------------------------------

std::optional<std::int64_t> SongRecord::Number(Field field) const noexcept {
  const auto text = Text(field);
  return text ? NumberIn(*text) : std::nullopt;
}

bool SongRecord::Is(Field flag) const noexcept {
  return Text(flag) == "true";
}

// ---- The reader ---------------------------------------------------------------------------------

namespace {

struct Walk {
  SongRecordReader& reader;
  KeptFailure failure;
};

}  // namespace

SongRecordReader::SongRecordReader(const LibraryFunctions& library, const FieldSet& wanted,
                                   const OtherKeys* keys)
    : library_(library),
      wanted_(wanted),
      read_(wanted),
      others_(keys),
      keys_(keys),
      plain_(library),
      location_(library.files) {
  if (wanted.test(IndexOf(Field::Path)) || wanted.test(IndexOf(Field::Status))) {
    read_ |= SetOf({Field::Location, Field::Type});
  }
}

void SongRecordReader::ReadAllKeys(OtherKeys& keys) {
  others_ = growing_ = &keys;
  keys_ = SongKeys(&keys);
}

inline SongRecord::Place SongRecordReader::Append(std::string_view text, bool isText) {
  const SongRecord::Place place{record_.texts_.Size(), text.size(), isText};
  char* const end = GrowingText::Copy(text, record_.texts_.RoomFor(text.size() + 1));
  *end = '\0';
  record_.texts_.EndAt(end + 1);
  return place;
}

void SongRecordReader::Set(Field field, std::string_view text, bool isText) {
  record_.places_[IndexOf(field)] = Append(text, isText);
}

void SongRecordReader::SetNumber(Field field, std::int64_t number) {
  std::array<char, 32> room;
  const char* end = std::to_chars(room.data(), room.data() + room.size(), number).ptr;
  Set(field, {room.data(), static_cast<std::size_t>(end - room.data())}, false);
}

void SongRecordReader::SetSeconds(std::int64_t milliseconds) {
  std::array<char, 32> room;
  record_.milliseconds_ = milliseconds;
  Set(Field::Seconds, SecondsOf(milliseconds, room), false);
}

std::int32_t SongRecordReader::Visit(const char* key, const char* text, const char* type,
                                     void* context) {
  auto& walk = *static_cast<Walk*>(context);
  return walk.failure.Keep([&] {
    walk.reader.Take(key, text, type);
    return 1;
  });
}

void SongRecordReader::Take(const char* key, const char* text, const char* type) {
  std::size_t number = keys_.Find(key);
  if (showPair_) showPair_(number, key, text, type);
  if (number == SongKeys::kUnknown) {
    if (growing_ == nullptr) return;
    number = Learn(key);
  }
  if (number >= kFieldCount) {
    if (text != nullptr) TakeOther(number - kFieldCount, text, type);
    return;
  }
  if (!read_[number] || seen_[number]) return;
  seen_[number] = true;  // the first of two equal keys counts
  if (text != nullptr) TakeField(static_cast<Field>(number), text);
}

std::size_t SongRecordReader::Learn(const char* key) {
  growing_->Add(key);
  record_.others_.emplace_back();
  return keys_.Find(key);
}

void SongRecordReader::TakeField(Field field, std::string_view text) {
  switch (FactsOf(field).type) {
    case FieldType::Text:
      Set(field, text);
      break;
    case FieldType::Date:
      if (IsDate(text)) Set(field, text);
      break;
    case FieldType::Flag:
      if (text == "true") Set(field, text, false);
      break;
    case FieldType::Number:
      if (IsPlainNumber(text)) {
        Set(field, text, false);
      } else if (const auto number = NumberIn(text)) {
        SetNumber(field, *number);
      }
      break;
    case FieldType::Seconds:
      if (const auto number = NumberIn(text)) SetSeconds(*number);
      break;
  }
}

void SongRecordReader::TakeOther(std::size_t key, std::string_view text, std::string_view type) {
  SongRecord::Place& place = record_.others_[key];
  if (place.from != SongRecord::kNone) return;
  const bool isTruth = type == "true" || type == "false";
  const bool isNumber = type == "integer" && IsJsonNumber(text);
  place = Append(text, !isTruth && !isNumber);
}

// Of what is not in the file the library tells these alone.
void SongRecordReader::TakeFromLibrary(PlaylistRecord* playlist, std::int32_t position) {
  const Song& song = plain_.Read(playlist, position);
  const auto set = [this](Field field, const std::optional<std::string_view>& text) {
    if (text && wanted_.test(IndexOf(field))) Set(field, *text);
  };
  const auto setNumber = [this](Field field, std::int32_t number) {
    if (number != 0 && wanted_.test(IndexOf(field))) TakeField(field, std::to_string(number));
  };
  set(Field::Name, song.name);
  set(Field::Artist, song.artist);
  set(Field::Album, song.album);
  set(Field::Genre, song.genre);
  if (song.location) record_.writtenPath_ = Append(*song.location);
  setNumber(Field::Seconds, song.totalTime);
  setNumber(Field::Plays, song.playCount);
  setNumber(Field::Track, song.trackNumber);
  if (song.isMovie && wanted_.test(IndexOf(Field::Movie))) TakeField(Field::Movie, "true");
  if (!read_.test(IndexOf(Field::Location))) return;
  record_.soughtPath_ = record_.writtenPath_;
  const bool isThere = song.location && Exists(std::string(*song.location));
  if (isThere) Set(Field::Path, *song.location);
  record_.state_ = isThere         ? FileStatus::Found
                   : song.location ? FileStatus::Missing
                                   : FileStatus::None;
}

const SongRecord& SongRecordReader::Read(PlaylistRecord* playlist, std::int32_t position) {
  record_.texts_.Clear();
  record_.places_.fill({});
  record_.others_.assign(others_ == nullptr ? 0 : others_->All().size(), {});
  record_.milliseconds_ = 0;
  record_.writtenPath_ = record_.soughtPath_ = record_.musicFolder_ = {};
  record_.state_.reset();
  seen_.reset();
  Walk walk{*this, {}};
  record_.isOutside_ = library_.visitSongProperties(playlist, position, Visit, &walk) == 0;
  walk.failure.Throw();
  if (record_.isOutside_) {
    TakeFromLibrary(playlist, position);
  } else if (read_.test(IndexOf(Field::Location))) {
    FindFile();
  }
  if (record_.state_ && wanted_.test(IndexOf(Field::Status))) {
    Set(Field::Status, StatusName(*record_.state_));
  }
  return record_;
}

void SongRecordReader::FindFile() {
  const bool isSought = wanted_.test(IndexOf(Field::Path)) || wanted_.test(IndexOf(Field::Status));
  location_.Read(record_.Text(Field::Location), record_.Text(Field::Type).value_or(""), isSought);
  if (wanted_.test(IndexOf(Field::Location))) {
    if (const auto path = location_.WrittenPath()) record_.writtenPath_ = Append(*path);
  }
  const SongFile& file = location_.File();
  record_.state_ = file.status;
  if (!file.path.empty()) Set(Field::Path, file.path);
  if (file.sought.data() == file.path.data()) {
    record_.soughtPath_ = record_.places_[IndexOf(Field::Path)];
  } else if (!file.sought.empty()) {
    record_.soughtPath_ = Append(file.sought);
  }
  if (!file.musicFolder.empty()) record_.musicFolder_ = Append(file.musicFolder);
}

// ---- Songs --------------------------------------------------------------------------------------

FieldSet FieldsOfSong() {
  return SetOf({Field::Name, Field::Artist, Field::AlbumArtist, Field::Album, Field::Genre,
                Field::Track, Field::Seconds, Field::Plays, Field::Compilation, Field::Podcast,
                Field::Movie, Field::Location});
}

Song AsSong(const SongRecord& record) {
  const auto number = [&](Field field) {
    const std::int64_t value = record.Number(field).value_or(0);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
  };
  Song song;
  song.name = record.Text(Field::Name);
  song.location = record.WrittenPath();
  song.artist = record.Text(Field::Artist);
  song.albumArtist = record.Text(Field::AlbumArtist);
  song.album = record.Text(Field::Album);
  song.genre = record.Text(Field::Genre);
  song.totalTime = static_cast<std::int32_t>(
      std::clamp<std::int64_t>(record.Milliseconds(), INT32_MIN, INT32_MAX));
  song.playCount = number(Field::Plays);
  song.trackNumber = number(Field::Track);
  song.isMovie = record.Is(Field::Movie);
  song.isPodcast = record.Is(Field::Podcast);
  song.isCompilation = record.Is(Field::Compilation);
  return song;
}

}  // namespace tavrel::host
