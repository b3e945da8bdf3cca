// What is odd about the dictionaries of songs, seen while the songs are read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/checks/DuplicateSearch.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongRecord.h"
#include "host/library/TextNumbers.h"
#include "host/output/MessageGuard.h"

namespace tavrel::host {

struct FileFinding {
  std::string_view name;  // "idTwice"
  std::string what;       // "songs that have the ID of another one"
  std::int64_t count = 0;
  Positions songs;  // those that are known of it
};

// Adds nothing for no songs.
void AddFinding(std::vector<FileFinding>& findings, std::string_view name, std::string what,
                Positions songs);

class DictionaryChecks {
 public:
  DictionaryChecks() = default;
  DictionaryChecks(const DictionaryChecks&) = delete;
  DictionaryChecks& operator=(const DictionaryChecks&) = delete;

  // Looks at every pair that the reader reads. This object must outlive its last reading.
  void WatchReader(SongRecordReader& reader);

  // The song at that position has been read: the one behind the last.
  void End(std::int32_t position);

  // Takes what was found.
  void Report(std::vector<FileFinding>& findings);

  // Takes the IDs by which playlists know the songs.
  [[nodiscard]] std::vector<NumberedId> TakeTrackIds() noexcept { return std::move(trackIds_); }

 private:
  using Id = std::int64_t;

  void Take(std::size_t number, const char* key, const char* text, const char* type);
  void TakeId(std::string_view text);
  [[nodiscard]] Positions Twice();

  std::int64_t logged_ = LoggedBytes();
  std::optional<Id> id_;  // of the song that is read
  // By which playlists know it: nothing where the first value that it has is none.
  std::optional<std::optional<Id>> trackId_;
  std::string persistentId_;
  std::vector<std::pair<std::string, std::string>>
      oddities_;  // its keys that are odd, and their types
  std::vector<std::pair<Id, std::int32_t>> ids_;
  std::vector<NumberedId> trackIds_;
  TextNumbers persistentIds_;
  Positions withoutId_;
  Positions outOfOrder_;
  Positions persistentTwice_;
  Positions broken_;
  std::map<std::pair<std::string, std::string>, Positions> odd_;
};

}  // namespace tavrel::host
