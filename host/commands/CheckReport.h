// What tavrel check has found, as people and programs read it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/checks/CoverChecks.h"
#include "host/checks/FileChecks.h"
#include "host/checks/SongChecks.h"
#include "host/library/Session.h"
#include "host/library/SongRecord.h"

namespace tavrel::host {

enum class CheckPart { All, Missing, Respelled, Duplicates, Orphans, Covers, File };

// The parts that were looked at.
struct CheckReport {
  std::optional<SongChecks> songs;
  std::optional<std::vector<std::string>> orphans;
  std::optional<CoverChecks> covers;
  std::optional<FileChecks> file;

  // Whether a file is missing or unreadable, as far as the part goes.
  [[nodiscard]] bool IsBad(CheckPart part) const;
};

// What lists show of a song.
[[nodiscard]] FieldSet FieldsOfCheck();

// visit(record) for each of the songs.
template <typename Visit>
void ForEachOf(const Positions& songs, const FieldSet& fields, const Session& session,
               Visit visit) {
  SongRecordReader reader(session.library, fields);
  PlaylistRecord* all = session.library.openAllSongs();
  for (const std::int32_t song : songs) visit(reader.Read(all, song));
}

// Counts, with the commands that show more.
void PrintCheckSummary(const CheckReport& report, Session& session);

// One part, or all of them.
void PrintCheckJson(const CheckReport& report, CheckPart part, Session& session);

// One part as a list; nothing where nothing was found. False then.
[[nodiscard]] bool PrintCheckList(const CheckReport& report, CheckPart part, Session& session);

// The paths of one part's files, each once and ended by a zero byte. Not of the file's own part.
void PrintCheckPaths(const CheckReport& report, CheckPart part, Session& session);

}  // namespace tavrel::host
