// Where a playlist finds a song.
#pragma once

#include <string>
#include <string_view>

#include "host/library/SongRecord.h"

namespace tavrel::host {

// Either a path, a URL, or why there is none.
struct SongTarget {
  std::string path;       // absolute
  std::string_view url;   // of a stream
  std::string_view lack;  // "missing", "remote" or "none", as the song's status
};

// What a target needs of a record.
[[nodiscard]] FieldSet FieldsOfTarget();

// keepMissing: a missing file has the path where it should be. The views are the record's.
[[nodiscard]] SongTarget TargetOf(const SongRecord& song, bool keepMissing);

// Whether a location is a URL that a player may be given: of a scheme by which streams are played, and without
// anything that could end a line or be taken for a command.
[[nodiscard]] bool IsStreamUrl(std::string_view location);

// folder: absolute, without links and without '/' at its end; empty for the top. path: absolute.
// Result: the path as seen from the folder: "../Music/a.mp3".
[[nodiscard]] std::string RelativePath(std::string_view folder, std::string_view path);

}  // namespace tavrel::host
