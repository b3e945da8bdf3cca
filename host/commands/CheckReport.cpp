#include "host/commands/CheckReport.h"

#include "host/library/Invocation.h"
#include "host/output/Format.h"
#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

std::int64_t NumberOf(const auto& list) {
  return static_cast<std::int64_t>(list.size());
}

struct SummaryLine {
  std::int64_t count;
  std::string what;
  std::string_view part;  // that shows more; empty: none does
  bool isAlways = false;  // shown even when there is none
};

void AddSongs(const SongChecks& songs, std::vector<SummaryLine>& lines) {
  std::string below;
  for (const std::string& folder : songs.musicFolders) {
    below += (below.empty() ? " below " : " and ") + folder;
  }
  std::int64_t twice = 0;
  for (const Duplicates& group : songs.duplicates) twice += NumberOf(group.songs) - 1;
  lines.push_back({songs.tally.Count(FileStatus::Found) + songs.tally.Count(FileStatus::Respelled),
                   "files found" + below, "", true});
  lines.push_back({songs.tally.Count(FileStatus::Respelled),
                   "of them spelled otherwise than the library has it", "respelled"});
  lines.push_back({songs.tally.Count(FileStatus::Missing), "files missing", "missing", true});
  lines.push_back({songs.tally.Count(FileStatus::Remote), "songs that lie elsewhere (remote)", ""});
  lines.push_back({songs.tally.Count(FileStatus::None), "songs without a place", ""});
  lines.push_back({twice, "songs that are there once more", "duplicates"});
}

std::vector<SummaryLine> SummaryOf(const CheckReport& report) {
  std::vector<SummaryLine> lines;
  if (report.songs) AddSongs(*report.songs, lines);
  if (report.orphans) {
    lines.push_back({NumberOf(*report.orphans), "files of music that no song names", "orphans"});
  }
  if (report.covers) {
    lines.push_back(
        {NumberOf(report.covers->damaged), "cover files that cannot be read", "covers"});
    lines.push_back({NumberOf(report.covers->without), "albums without a cover", "covers"});
  }
  if (report.file) {
    if (!report.file->isWhole) lines.push_back({1, "library file that is cut off", "file"});
    for (const FileFinding& finding : report.file->findings) {
      lines.push_back({finding.count, finding.what, "file"});
    }
  }
  return lines;
}

// What is said of the first song that is missing, for who looks for the right folder.
void PrintFirstMissing(const SongChecks& songs, Session& session) {
  std::string sought;
  std::string map = "OLD=NEW";
  ForEachOf({songs.missing.front()}, FieldsOfCheck(), session, [&](const SongRecord& song) {
    sought = song.SoughtPath().value_or(song.Text(Field::Location).value_or(""));
    const std::string_view written = song.WrittenPath().value_or("");
    const std::size_t slash = written.rfind('/');
    const bool isPlain = slash != std::string_view::npos && slash > 0 &&
                         written.substr(0, slash).find('=') == std::string_view::npos;
    if (isPlain) map = Quoted(Clean(std::string(written.substr(0, slash))) + "=DIR");
  });
  session.output.WriteLine("\nThe first that is missing: " + Clean(sought));
  session.output.WriteLine("If the files lie elsewhere: " +
                           Invocation(session.options, "check --music DIR") + ", or --map " + map);
}

}  // namespace

FieldSet FieldsOfCheck() {
  return SetOf({Field::Name, Field::Artist, Field::Album, Field::Seconds, Field::Location,
                Field::Path, Field::Status});
}

bool CheckReport::IsBad(CheckPart part) const {
  const bool isAll = part == CheckPart::All;
  if ((isAll || part == CheckPart::Missing) && songs && !songs->missing.empty()) return true;
  if (covers && !covers->damaged.empty()) return true;
  return file && !file->isWhole;
}

void PrintCheckSummary(const CheckReport& report, Session& session) {
  const std::vector<SummaryLine> lines = SummaryOf(report);
  const Table table(
      {{.title = "Count", .align = Align::Right},
       {.title = "What", .weight = 1},
       {.title = "To see them", .style = Style::Dim}},
      [&](Rows& rows) {
        for (const SummaryLine& line : lines) {
          if (line.count == 0 && !line.isAlways) continue;
          rows.Add(line.count);
          rows.Add(line.what);
          rows.Add(line.count == 0 || line.part.empty()
                       ? std::string()
                       : Invocation(session.options, "check --only " + std::string(line.part)));
        }
      });
  table.Print(session.terminal, session.output);
  if (session.options.quiet) return;
  if (report.covers && !report.covers->hasCache) {
    session.output.WriteLine("\nThere are no covers to check: no artwork cache lies beside it.");
  }
  if (!report.songs || report.songs->missing.empty()) return;
  PrintFirstMissing(*report.songs, session);
}

}  // namespace tavrel::host
