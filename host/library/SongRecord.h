// Everything that the library file says of a song.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/FileFinder.h"
#include "host/library/Library.h"
#include "host/library/LocationReader.h"
#include "host/library/SongKeys.h"
#include "host/library/SongReader.h"
#include "host/output/GrowingText.h"

namespace tavrel::host {

// A value as it is told: a text, or a number or truth value in the form that JSON has for it.
struct FieldValue {
  std::optional<std::string_view> text;  // none where there is nothing
  bool isText = true;
};

// One song. A value that is not what its field's type asks for is none, as is a missing one; a missing
// flag is false, since the file only says what is so.
class SongRecord {
 public:
  [[nodiscard]] FieldValue Value(Field field) const noexcept {
    const Place& place = places_[IndexOf(field)];
    if (place.from == kNone && FactsOf(field).type == FieldType::Flag) return {"false", false};
    return At(place);
  }
  [[nodiscard]] std::optional<std::string_view> Text(Field field) const noexcept {
    return Value(field).text;
  }
  [[nodiscard]] std::optional<std::int64_t> Number(Field field) const noexcept;  // not of Seconds
  [[nodiscard]] std::int64_t Milliseconds() const noexcept { return milliseconds_; }
  [[nodiscard]] bool Is(Field flag) const noexcept;
  // Of a key that is no field's, by its number among the keys that the reader knows.
  [[nodiscard]] FieldValue Other(std::size_t key) const noexcept { return At(others_[key]); }
  // The path that its location names, where it once was; known when Location is read.
  [[nodiscard]] std::optional<std::string_view> WrittenPath() const noexcept {
    return At(writtenPath_).text;
  }
  // These are known when Path or Status is read. The file is there, or is to be told as if it were: exactly
  // then Path has a value. (Status has none when the user wants no look at the disk.)
  [[nodiscard]] bool HasFile() const noexcept { return Text(Field::Path).has_value(); }
  [[nodiscard]] std::optional<FileStatus> State() const noexcept { return state_; }
  // Where the file is or, when it is missing, should be; none for a song without one.
  [[nodiscard]] std::optional<std::string_view> SoughtPath() const noexcept {
    return At(soughtPath_).text;
  }
  // The folder of music that it was found in; none when it lies elsewhere.
  [[nodiscard]] std::optional<std::string_view> MusicFolder() const noexcept {
    return At(musicFolder_).text;
  }
  // Whether the library tells of it without its file, as it does of ringtones.
  [[nodiscard]] bool IsOutsideTheFile() const noexcept { return isOutside_; }

 private:
  friend class SongRecordReader;

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Place {
    std::size_t from = kNone;  // in the texts
    std::size_t size = 0;
    bool isText = true;
  };

  [[nodiscard]] FieldValue At(const Place& place) const noexcept {
    if (place.from == kNone) return {};
    return {std::string_view(texts_.At(place.from), place.size), place.isText};
  }

  GrowingText texts_;  // each with a zero byte behind it
  std::array<Place, kFieldCount> places_;
  std::vector<Place> others_;
  std::int64_t milliseconds_ = 0;
  Place writtenPath_;
  Place soughtPath_;
  Place musicFolder_;
  std::optional<FileStatus> state_;
  bool isOutside_ = false;
};

// Reads songs one after the other into one record.
class SongRecordReader {
 public:
  // wanted: the fields that are read; others stay none. keys: the other keys that are read, borrowed; null
  // for none.
  SongRecordReader(const LibraryFunctions& library, const FieldSet& wanted,
                   const OtherKeys* keys = nullptr);
  // From now on reads every other key, and adds those that `keys` has not; borrowed. A record then has values
  // for all keys that were known when it was read.
  void ReadAllKeys(OtherKeys& keys);
  // From now on shows each pair of a song while it is read: as the library's own visitor is shown it, and what
  // SongKeys call the key.
  using ShowPair =
      std::function<void(std::size_t number, const char* key, const char* text, const char* type)>;
  void ShowPairs(ShowPair show) { showPair_ = std::move(show); }

  // The texts stay valid until the next call. position: must be one of the playlist's.
  // Cost: one walk over the song's properties; for its path or status also what the library's file finder
  // takes. Where that is missing both are none.
  const SongRecord& Read(PlaylistRecord* playlist, std::int32_t position);

 private:
  static std::int32_t Visit(const char* key, const char* text, const char* type, void* context);
  void Take(const char* key, const char* text, const char* type);
  [[nodiscard]] std::size_t Learn(const char* key);
  void TakeField(Field field, std::string_view text);
  void TakeOther(std::size_t key, std::string_view text, std::string_view type);
  void TakeFromLibrary(PlaylistRecord* playlist, std::int32_t position);
  void FindFile();
  [[nodiscard]] SongRecord::Place Append(std::string_view text, bool isText = true);
  void Set(Field field, std::string_view text, bool isText = true);
  void SetNumber(Field field, std::int64_t number);
  void SetSeconds(std::int64_t milliseconds);

  const LibraryFunctions& library_;
  FieldSet wanted_;
  FieldSet read_;  // what the wanted fields need
  const OtherKeys* others_;
  ShowPair showPair_;
  OtherKeys* growing_ = nullptr;  // the same, when they may grow
  SongKeys keys_;
  FieldSet seen_;
  SongReader plain_;
  SongRecord record_;
  LocationReader location_;
};

// What albums, statistics and names of files need of a song. The texts are the record's; the location is the
// path as it is written, and nobody looks for a file.
[[nodiscard]] FieldSet FieldsOfSong();
[[nodiscard]] Song AsSong(const SongRecord& record);

template <typename Visit>
void ForEachRecord(const LibraryFunctions& library, PlaylistRecord* playlist,
                   const FieldSet& wanted, Visit visit) {
  SongRecordReader reader(library, wanted);
  const std::int32_t count = library.getSongCount(playlist);
  for (std::int32_t position = 0; position < count; ++position) {
    visit(position, reader.Read(playlist, position));
  }
}

[[nodiscard]] FieldSet SetOf(std::initializer_list<Field> fields);

}  // namespace tavrel::host
