// tavrel check: what is missing, twice, unclaimed or odd.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/checks/Orphans.h"
#include "host/commands/CheckReport.h"
#include "host/commands/Commands.h"
#include "host/files/SongFiles.h"
#include "host/library/Playlists.h"
#include "host/library/SongReader.h"
#include "host/output/Format.h"
#include "host/output/Progress.h"

namespace tavrel::host {
namespace {

struct CheckArguments {
  std::optional<std::string> only;
  bool isNul = false;
};

struct PartName {
  CheckPart part;
  const char* name;
  std::string_view nothing;  // what is said where nothing was found
};

constexpr std::array kPartNames{
    PartName{CheckPart::Missing, "missing", "no file is missing"},
    PartName{CheckPart::Respelled, "respelled", "no file is spelled otherwise"},
    PartName{CheckPart::Duplicates, "duplicates", "no song is there twice"},
    PartName{CheckPart::Orphans, "orphans", "every file of music belongs to a song"},
    PartName{CheckPart::Covers, "covers", "no cover is missing or unreadable"},
    PartName{CheckPart::File, "file", "nothing odd is in the library file"},
};

const PartName* NameOf(const std::optional<std::string>& only) {
  const auto part = std::find_if(kPartNames.begin(), kPartNames.end(),
                                 [&](const PartName& name) { return only == name.name; });
  return part == kPartNames.end() ? nullptr : &*part;
}

// The ringtones, which lie in the folder of music as well.
void ClaimRingtones(const Session& session, NamedFiles& files) {
  for (const Playlist& playlist : ReadPlaylists(session.library)) {
    if (playlist.isInFile) continue;
    ForEachSong(session.library, playlist.handle, [&](std::int32_t, const Song& ringtone) {
      if (ringtone.location) files.Add(UserPath(session, *ringtone.location), true);
    });
  }
}

std::vector<std::string> OrphansOf(SongChecks& songs, const Session& session) {
  std::set<std::string> folders = songs.musicFolders;
  if (folders.empty()) {
    if (const auto folder = session.files.MusicFolder()) folders.insert(*folder);
  }
  ClaimRingtones(session, songs.files);
  return FindOrphans(folders, songs.files, session.files.AllFolders());
}

// Looks at what the part needs.
CheckReport LookForPart(CheckPart part, Session& session) {
  const auto isWanted = [part](CheckPart one) { return part == CheckPart::All || part == one; };
  const bool withSongs = part != CheckPart::Covers && part != CheckPart::File;
  const auto songs =
      static_cast<std::size_t>(session.library.getSongCount(session.library.openAllSongs()));
  const std::size_t rounds = part == CheckPart::All ? 2 : 1;
  Progress progress(rounds * songs, session.terminal, session.output, session.options.quiet);
  const auto step = [&progress] { progress.Step(); };
  CheckReport report;
  DictionaryChecks dictionaries;  // read together with the songs, where both are wanted
  const bool areBoth = withSongs && isWanted(CheckPart::File);
  if (withSongs) {
    report.songs = CheckSongs(session.library, step, areBoth ? &dictionaries : nullptr);
  }
  if (isWanted(CheckPart::Orphans)) report.orphans = OrphansOf(*report.songs, session);
  if (isWanted(CheckPart::Covers)) report.covers = CheckCovers(session, step);
  if (isWanted(CheckPart::File)) {
    report.file = CheckFile(session, step, areBoth ? &dictionaries : nullptr);
  }
  return report;
}

// A folder that seems empty for that reason would hide files without a word.
void TellUnlistedFolders(Session& session) {
  if (session.options.quiet) return;
  const std::vector<std::string> folders = session.files.AllFolders().Unlisted();
  if (folders.empty()) return;
  std::string message = "cannot list " + folders.front();
  if (folders.size() > 1) message += ", and " + Counted(std::ssize(folders) - 1, "other folder");
  Complain(message + ": what no song names is not seen there");
}

ExitCode Check(const CheckArguments& arguments, Session& session) {
  if (session.options.paths.form != PathForm::Auto) {
    throw Failure(ExitCode::Usage,
                  "check looks at the disk, which --paths nfc, nfd and raw do not");
  }
  const PartName* name = NameOf(arguments.only);
  const CheckPart part = name != nullptr ? name->part : CheckPart::All;
  const CheckReport report = LookForPart(part, session);
  const ExitCode code = report.IsBad(part) ? ExitCode::Failed : ExitCode::Done;
  if (report.songs) TellUnlistedFolders(session);
  if (name != nullptr && report.songs) TellWhatWasFound(report.songs->tally, session);
  if (arguments.isNul) {
    PrintCheckPaths(report, part, session);
  } else if (session.options.json) {
    PrintCheckJson(report, part, session);
  } else if (name == nullptr) {
    PrintCheckSummary(report, session);
  } else if (!PrintCheckList(report, part, session) && !session.options.quiet) {
    Complain(std::string(name->nothing));
  }
  return code;
}

}  // namespace

void DefineCheck(CommandDefinition program) {
  const auto arguments = std::make_shared<CheckArguments>();
  CommandDefinition command = program.AddCommand(
      "check",
      "Tell what is missing, there twice, or odd; exit code 1 for what is missing or unreadable");
  std::vector<std::string> names;
  for (const PartName& part : kPartNames) names.emplace_back(part.name);
  command.AddChoice("--only", arguments->only, names,
                    "One part, whole: files that are missing or spelled otherwise, songs that\n"
                    "are there twice, files that no song names, covers that are missing or\n"
                    "unreadable, or what is odd about the library file (but for items of\n"
                    "playlists that name no song of it: nothing is known of those)");
  command.AddFlag("-0", arguments->isNul,
                  "With --only: the paths of the files alone, each ended by a zero byte, for\n"
                  "xargs -0");
  command.Makes([arguments] {
    const bool hasPaths = arguments->only && arguments->only != "file";
    if (arguments->isNul && !hasPaths) {
      throw UsageError("-0 needs --only with a part that names files");
    }
    return Task{.run = [arguments](Session& session) { return Check(*arguments, session); },
                .isPaged = arguments->only.has_value()};
  });
}

}  // namespace tavrel::host
