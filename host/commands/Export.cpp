// tavrel export: playlists as files, or the whole library as a database.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/Commands.h"
#include "host/commands/SongList.h"
#include "host/export/DatabaseFile.h"
#include "host/export/ExportPlan.h"
#include "host/export/ExportReport.h"
#include "host/export/ListExport.h"
#include "host/export/PlaylistWriter.h"
#include "host/library/Playlists.h"

namespace tavrel::host {
namespace {

struct ExportArguments {
  std::vector<std::string> lists;
  std::optional<std::string> target;
  std::optional<std::string> format;
  std::optional<std::string> relativeTo;
  bool all = false;
  bool flat = false;
  bool keepMissing = false;
  bool force = false;
  bool dryRun = false;

  [[nodiscard]] std::string Format() const { return format.value_or("m3u8"); }
};

std::optional<PlaylistKind> KindOf(const std::string& format) {
  if (format == "m3u8") return PlaylistKind::M3u8;
  if (format == "m3u") return PlaylistKind::M3u;
  if (format == "xspf") return PlaylistKind::Xspf;
  return std::nullopt;
}

// Every song of a list with all that the file says of it, whether it can be played or not.
class SongsWriter : public ListWriter {
 public:
  SongsWriter(SongFileFormat format, const Session& session) : format_(format), session_(session) {}

  std::int64_t Write(const PlannedList& list, Sink& sink, ExportReport& report,
                     Progress& progress) override {
    WriteSongs(list.playlist->handle, format_, session_, sink,
               [&](std::int32_t position, const SongRecord& song) {
                 report.AddFile(*list.playlist, position, song);
                 progress.Step();
               });
    return list.playlist->songCount;
  }

 private:
  SongFileFormat format_;
  const Session& session_;
};

std::vector<PlannedList> Plan(const ExportArguments& arguments,
                              const std::vector<Playlist>& playlists, const Session& session) {
  std::vector<bool> chosen;
  if (!arguments.lists.empty()) {
    chosen = ChooseNamed(playlists, arguments.lists, session.options);
  } else {
    chosen = arguments.all ? ChooseAll(playlists) : ChooseOwn(playlists);
  }
  std::vector<PlannedList> lists =
      PlanLists(playlists, chosen, arguments.flat ? Layout::Flat : Layout::Folders,
                std::string(1, '.').append(arguments.Format()));
  if (!lists.empty()) return lists;
  if (!arguments.lists.empty()) throw Failure(ExitCode::Failed, "there is no list in that folder");
  throw Failure(ExitCode::Failed,
                arguments.all ? "the library has no playlists"
                              : "the library has no playlists of your own; --all exports the "
                                "built-in ones, too");
}

ExitCode ExportPlaylists(const ExportArguments& arguments, Session& session) {
  const std::vector<Playlist> playlists = ReadPlaylists(session.library);
  const std::vector<PlannedList> lists = Plan(arguments, playlists, session);
  const ListExportOptions options{*arguments.target, arguments.force, arguments.dryRun};
  ExportReport report(session);
  if (const std::optional<PlaylistKind> kind = KindOf(arguments.Format())) {
    const PlaylistOptions playlist{*kind, *arguments.target, arguments.relativeTo,
                                   arguments.keepMissing};
    PlaylistWriter writer(playlist, session);
    ExportLists(lists, options, writer, session, report);
  } else {
    SongsWriter writer(arguments.Format() == "json" ? SongFileFormat::Json : SongFileFormat::Csv,
                       session);
    ExportLists(lists, options, writer, session, report);
  }
  report.Print(*arguments.target, arguments.Format(), arguments.dryRun, session);
  return report.IsSuccess() ? ExitCode::Done : ExitCode::Failed;
}

ExitCode RunExport(const ExportArguments& arguments, Session& session) {
  if (arguments.Format() != "sqlite") return ExportPlaylists(arguments, session);
  return ExportDatabase({*arguments.target, arguments.force, arguments.dryRun}, session);
}

void Check(const ExportArguments& arguments) {
  if (!arguments.target || arguments.target->empty()) {
    throw UsageError(
        "export needs a folder to write to: -o DIR; words without an option are lists");
  }
  if (arguments.target == "-") throw UsageError("export writes files: -o needs a folder");
  if (arguments.all && !arguments.lists.empty()) {
    throw UsageError("--all and LIST exclude each other");
  }
  const bool isDatabase = arguments.Format() == "sqlite";
  if (isDatabase && (!arguments.lists.empty() || arguments.flat)) {
    throw UsageError("sqlite is one database of the whole library: it takes no LIST and no --flat");
  }
  const bool isForPlayers = KindOf(arguments.Format()).has_value();
  if (!isForPlayers && (arguments.relativeTo || arguments.keepMissing)) {
    throw UsageError("--relative-to and --keep-missing go with m3u8, m3u and xspf");
  }
  if (arguments.relativeTo && arguments.relativeTo->empty()) {
    throw UsageError("--relative-to: the name is empty");
  }
}

}  // namespace

void DefineExport(CommandDefinition program) {
  const auto arguments = std::make_shared<ExportArguments>();
  CommandDefinition command =
      program.AddCommand("export", "Write playlists to files that players and programs read");
  command.AddPlaces("LIST", arguments->lists, 0,
                    "Playlists, as \"tavrel songs\" takes them; of a folder, all lists in it;\n"
                    "without it all that are not built-in");
  command.AddText("-o,--output", arguments->target, "PATH",
                  "The folder to write to; for sqlite the file, or the folder for\n"
                  "library.sqlite");
  command.AddChoice("--format", arguments->format, {"m3u8", "m3u", "xspf", "json", "csv", "sqlite"},
                    "m3u8 unless told otherwise; m3u is in Latin-1 where its characters allow\n"
                    "it; json and csv say of each song what \"tavrel songs --format\" does;\n"
                    "sqlite is one database of the whole library");
  command.AddFlag("--all", arguments->all, "Also the built-in lists");
  command.AddFlag("--flat", arguments->flat, "All files in one folder");
  command.AddText("--relative-to", arguments->relativeTo, "DIR",
                  "Write paths as seen from this folder; from the one of -o: as seen from\n"
                  "where each list lies");
  command.AddFlag("--keep-missing", arguments->keepMissing, "Also songs whose files are not there");
  command.AddFlag("--force", arguments->force, "Replace files that are there");
  command.AddFlag("-n,--dry-run", arguments->dryRun, "Only say what would be written");
  command.Makes([arguments] {
    Check(*arguments);
    return Task{.run = [arguments](Session& session) { return RunExport(*arguments, session); },
                .isPaged = false};
  });
}

}  // namespace tavrel::host
