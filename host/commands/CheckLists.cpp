// What tavrel check has found, as lists and as paths.
#include "host/commands/CheckReport.h"
#include "host/library/TextHash.h"
#include "host/output/Format.h"
#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

void PrintTable(const std::vector<Column>& columns, const GiveRows& rows, Session& session) {
  Table(columns, rows).Print(session.terminal, session.output);
}

void AddTitle(const SongRecord& song, Rows& rows) {
  rows.Add(song.Text(Field::Name).value_or(""));
  rows.Add(song.Text(Field::Artist).value_or(""));
  rows.Add(song.Text(Field::Album).value_or(""));
}

constexpr Column kName{.title = "Name", .weight = 2, .cut = Cut::Middle};
constexpr Column kArtist{.title = "Artist", .weight = 1, .rank = 2};
constexpr Column kAlbum{.title = "Album", .weight = 1, .rank = 3};
constexpr Column kFile{.title = "File", .weight = 4, .cut = Cut::Middle};

void PrintMissing(const Positions& songs, Session& session) {
  PrintTable(
      {kName, kArtist, kAlbum, kFile},
      [&](Rows& rows) {
        ForEachOf(songs, FieldsOfCheck(), session, [&](const SongRecord& song) {
          AddTitle(song, rows);
          rows.Add(song.SoughtPath().value_or(song.Text(Field::Location).value_or("")));
        });
      },
      session);
}

void PrintRespelled(const Positions& songs, Session& session) {
  const Column written{.title = "In the library", .weight = 1, .cut = Cut::Middle};
  const Column here{.title = "Here", .weight = 1, .cut = Cut::Middle};
  PrintTable(
      {written, here},
      [&](Rows& rows) {
        ForEachOf(songs, FieldsOfCheck(), session, [&](const SongRecord& song) {
          rows.Add(song.WrittenPath().value_or(""));
          rows.Add(song.Text(Field::Path).value_or(""));
        });
      },
      session);
}

void PrintDuplicates(const std::vector<Duplicates>& groups, Session& session) {
  const Column group{.title = "#", .align = Align::Right, .style = Style::Dim};
  const Column time{.title = "Time", .align = Align::Right, .rank = 1};
  PrintTable(
      {group, kName, kArtist, kAlbum, time, kFile},
      [&](Rows& rows) {
        std::int64_t number = 0;
        for (const Duplicates& duplicates : groups) {
          ++number;
          ForEachOf(duplicates.songs, FieldsOfCheck(), session, [&](const SongRecord& song) {
            rows.Add(number);
            AddTitle(song, rows);
            rows.Add(Clock(song.Milliseconds()));
            rows.Add(song.SoughtPath().value_or(song.Text(Field::Location).value_or("")));
          });
        }
      },
      session);
}

void PrintCovers(const CoverChecks& covers, Session& session) {
  PrintTable(
      {{.title = "Cover"}, {.title = "Album or file", .weight = 1}},
      [&](Rows& rows) {
        for (const std::string& file : covers.damaged) {
          rows.Add("unreadable");
          rows.Add(file);
        }
        for (const Album& album : covers.without) {
          rows.Add("missing");
          rows.Add(album.name);
        }
      },
      session);
}

void PrintFile(const FileChecks& file, Session& session) {
  PrintTable(
      {{.title = "Count", .align = Align::Right},
       {.title = "What"},
       {.title = "First", .weight = 1}},
      [&](Rows& rows) {
        if (!file.isWhole) {
          rows.Add(1);
          rows.Add("library file that is cut off");
          rows.Add("");
        }
        for (const FileFinding& finding : file.findings) {
          rows.Add(finding.count);
          rows.Add(finding.what);
          std::string first;
          if (!finding.songs.empty()) {
            ForEachOf({finding.songs.front()}, SetOf({Field::Name}), session,
                      [&](const SongRecord& song) { first = song.Text(Field::Name).value_or(""); });
          }
          rows.Add(first);
        }
      },
      session);
}

// ---- Paths --------------------------------------------------------------------------------------

class PathPrinter {
 public:
  explicit PathPrinter(Session& session) : session_(session) {}

  void Print(std::string_view path) {
    if (path.empty() || !printed_.emplace(path).second) return;
    session_.output.Write(path);
    session_.output.Write(std::string_view("\0", 1));
  }

  void PrintOf(const Positions& songs) {
    ForEachOf(songs, FieldsOfCheck(), session_,
              [this](const SongRecord& song) { Print(song.SoughtPath().value_or("")); });
  }

 private:
  Session& session_;
  TextSet printed_;
};

}  // namespace

bool PrintCheckList(const CheckReport& report, CheckPart part, Session& session) {
  switch (part) {
    case CheckPart::Missing:
      if (report.songs->missing.empty()) return false;
      PrintMissing(report.songs->missing, session);
      return true;
    case CheckPart::Respelled:
      if (report.songs->respelled.empty()) return false;
      PrintRespelled(report.songs->respelled, session);
      return true;
    case CheckPart::Duplicates:
      if (report.songs->duplicates.empty()) return false;
      PrintDuplicates(report.songs->duplicates, session);
      return true;
    case CheckPart::Orphans:
      for (const std::string& path : *report.orphans) session.output.WriteLine(Clean(path));
      return !report.orphans->empty();
    case CheckPart::Covers:
      if (report.covers->without.empty() && report.covers->damaged.empty()) return false;
      PrintCovers(*report.covers, session);
      return true;
    case CheckPart::File:
      if (report.file->isWhole && report.file->findings.empty()) return false;
      PrintFile(*report.file, session);
      return true;
    case CheckPart::All:
      break;
  }
  return false;
}

void PrintCheckPaths(const CheckReport& report, CheckPart part, Session& session) {
  PathPrinter paths(session);
  if (part == CheckPart::Missing) paths.PrintOf(report.songs->missing);
  if (part == CheckPart::Respelled) paths.PrintOf(report.songs->respelled);
  if (part == CheckPart::Duplicates) {
    for (const Duplicates& group : report.songs->duplicates) paths.PrintOf(group.songs);
  }
  if (part == CheckPart::Orphans) {
    for (const std::string& path : *report.orphans) paths.Print(path);
  }
  if (part == CheckPart::Covers) {
    for (const std::string& path : report.covers->damaged) paths.Print(path);
  }
}

}  // namespace tavrel::host
