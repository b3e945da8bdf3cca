// tavrel copy: the files of playlists into a folder, and the playlists beside them.
#include <sys/statvfs.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

#include "host/commands/Commands.h"
#include "host/copying/CopyPlan.h"
#include "host/copying/CopyRun.h"
#include "host/copying/NamePattern.h"
#include "host/files/WrittenPath.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Playlists.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/Progress.h"
#include "host/output/Text.h"
#include "system/BlockedSignals.h"
#include "system/FolderListing.h"

namespace tavrel::host {
namespace {

struct CopyArguments {
  std::vector<std::string> lists;
  std::optional<std::string> folder;
  std::optional<std::string> pattern;
  CopyOptions options;
  bool isDryRun = false;
};

// Names of files would lie beside it otherwise.
void RequireFolder(const std::string& path) {
  std::error_code ignored;
  const auto kind = std::filesystem::status(path, ignored).type();
  if (kind == std::filesystem::file_type::directory) return;
  if (kind != std::filesystem::file_type::not_found) {
    throw Failure(ExitCode::Failed, path + " is no folder");
  }
}

// File systems that compress or share what they hold may have room all the same.
void WarnOfLittleRoom(const CopyWork& work, const std::string& folder) {
  struct statvfs state = {};
  if (::statvfs(folder.c_str(), &state) != 0) return;
  const auto room = std::uint64_t{state.f_bavail} * state.f_frsize;
  if (work.bytes <= room) return;
  Complain(SizeText(work.bytes) + " are to be copied, and " + folder + " has room for " +
           SizeText(room));
}

void PrintMissing(const CopyPlan& plan, Output& output) {
  if (plan.withoutFile.empty()) return;
  const auto count = static_cast<std::int64_t>(plan.withoutFile.size());
  output.WriteLine(Counted(count, "song") + " without a file here:");
  for (const SongWithoutFile& song : plan.withoutFile) {
    std::string line = "  " + Clean(song.name);
    if (!song.place.empty()) line += ": " + Clean(song.place);
    if (!song.status.empty() && song.status != "missing") line += " (" + song.status + ")";
    output.WriteLine(line);
  }
}

// Streams, and songs without a place, never had one.
bool LacksFiles(const CopyPlan& plan) {
  if (plan.files.empty()) return true;
  return std::any_of(plan.withoutFile.begin(), plan.withoutFile.end(),
                     [](const SongWithoutFile& song) { return song.status == "missing"; });
}

JsonArray JsonTexts(const std::vector<std::string>& texts) {
  JsonArray array;
  for (const std::string& text : texts) array.Add(text);
  return array;
}

JsonArray JsonMissing(const CopyPlan& plan) {
  JsonArray missing;
  for (const SongWithoutFile& song : plan.withoutFile) {
    missing.Add(JsonObject{{"name", song.name}, {"place", song.place}, {"status", song.status}});
  }
  return missing;
}

// ---- What would be done -------------------------------------------------------------------------

ExitCode ShowPlan(const CopyPlan& plan, const CopyRun& run, const std::string& folder,
                  Session& session) {
  std::vector<std::string> targets;
  const CopyWork work = run.Foresee(
      [&](const FileToCopy& file) { targets.push_back(system::PathIn(folder, file.target)); });
  const ExitCode code = LacksFiles(plan) ? ExitCode::Failed : ExitCode::Done;
  if (session.options.json) {
    const JsonObject answer{{"folder", folder},
                            {"toCopy", JsonTexts(targets)},
                            {"bytes", work.bytes},
                            {"left", plan.files.size() - work.files},
                            {"missing", JsonMissing(plan)}};
    session.output.WriteLine(answer.Text());
    return code;
  }
  for (const std::string& target : targets) session.output.WriteLine(Clean(target));
  session.output.WriteLine(Counted(static_cast<std::int64_t>(work.files), "file") + " (" +
                           SizeText(work.bytes) + ") would be copied, " +
                           Grouped(static_cast<std::int64_t>(plan.files.size() - work.files)) +
                           " left, there already");
  PrintMissing(plan, session.output);
  return code;
}

// ---- What was done ------------------------------------------------------------------------------

void PrintJson(const CopyReport& report, const CopyPlan& plan, const std::string& folder,
               Session& session) {
  const JsonObject summary{{"folder", folder},
                           {"copied", report.copied},
                           {"bytes", report.bytes},
                           {"linked", report.linked},
                           {"left", report.left},
                           {"playlists", report.lists},
                           {"playlistsLeft", report.listsLeft},
                           {"missing", JsonMissing(plan)},
                           {"differs", JsonTexts(report.differs)},
                           {"failed", JsonTexts(report.failed)},
                           {"stopped", report.isStopped}};
  session.output.WriteLine(summary.Text());
}

constexpr const char* kLeft = " left, there already";

std::string FilesDone(const CopyReport& report) {
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
  if (report.copied > 0 || report.linked + report.left == 0) {
    add(Counted(report.copied, "file") + " copied (" + SizeText(report.bytes) + ")");
  }
  if (report.linked > 0) add(Counted(report.linked, "file") + " linked");
  if (report.left > 0) add(Counted(report.left, "file") + kLeft);
  return text;
}

void PrintSummary(const CopyReport& report, const CopyPlan& plan, const std::string& folder,
                  Session& session) {
  Output& output = session.output;
  output.WriteLine(FilesDone(report));
  if (report.lists > 0) {
    output.WriteLine(Counted(report.lists, "playlist") + " written to " + Clean(folder));
  }
  if (report.listsLeft > 0) {
    output.WriteLine(Counted(report.listsLeft, "playlist") + kLeft);
  }
  PrintMissing(plan, output);
  if (report.differs.empty()) return;
  const auto count = static_cast<std::int64_t>(report.differs.size());
  output.WriteLine(Counted(count, "name") + " taken by something else, which --force replaces:");
  for (const std::string& path : report.differs) output.WriteLine("  " + Clean(path));
}

void SayWhatFailed(const CopyReport& report, const CopyPlan& plan) {
  for (const std::string& message : report.failed) Complain(message);
  if (!report.whyNotLinked.empty()) {
    Complain("files were copied that could not be linked: " + report.whyNotLinked);
  }
  if (!report.isStopped && !report.isDiskLost) return;
  const auto there = report.copied + report.linked + report.left;
  const auto all = static_cast<std::int64_t>(plan.files.size());
  const std::string before = report.isStopped ? "" : "make room, then ";
  Complain("stopped: " + Grouped(there) + " of " + Counted(all, "file") +
           " are there and whole\n  To go on, " + before + "give the same command again.");
}

ExitCode CodeOf(const CopyReport& report, const CopyPlan& plan) {
  const bool isAll =
      !LacksFiles(plan) && report.failed.empty() && report.differs.empty() && !report.isStopped;
  return isAll ? ExitCode::Done : ExitCode::Failed;
}

ExitCode CopyFiles(const CopyPlan& plan, CopyRun& run, const CopyArguments& arguments,
                   const std::string& folder, Session& session) {
  const CopyWork work = run.Foresee([](const FileToCopy&) {});
  const bool byLinks = arguments.options.byLinks;
  if (!byLinks) WarnOfLittleRoom(work, folder);
  // One that ends the program waits until it has said how far it has come.
  const auto blocked = system::BlockedSignals::Ending();
  const CopyReport* report = nullptr;
  {
    Progress progress(byLinks ? plan.files.size() : work.bytes, session.terminal, session.output,
                      session.options.quiet, byLinks ? ProgressOf::Things : ProgressOf::Bytes);
    report = &run.Run(
        [&](std::uint64_t bytes, std::size_t files) { progress.Step(byLinks ? files : bytes); });
  }
  if (session.options.json) {
    PrintJson(*report, plan, folder, session);
  } else {
    PrintSummary(*report, plan, folder, session);
  }
  session.output.Flush();
  SayWhatFailed(*report, plan);
  return CodeOf(*report, plan);
}

ExitCode CopyLists(const CopyArguments& arguments, Session& session) {
  const std::string folder = WithoutSlashAtEnd(*arguments.folder);
  RequireFolder(folder);
  const std::vector<Playlist> playlists = ReadPlaylists(session.library);
  std::vector<const Playlist*> lists;
  for (const std::string& list : arguments.lists)
    lists.push_back(&FindPlaylist(playlists, list, session.options));
  const NamePattern pattern(arguments.pattern.value_or(kUsualPattern));
  const CopyPlan plan = PlanCopies(session.library, lists, pattern);
  TellWhatWasFound(plan.tally, session);
  CopyRun run(session.library, plan, folder, arguments.options);
  if (arguments.isDryRun) return ShowPlan(plan, run, folder, session);
  return CopyFiles(plan, run, arguments, folder, session);
}

void Check(const CopyArguments& arguments) {
  if (arguments.lists.empty())
    throw UsageError("copy needs a LIST; \"tavrel playlists\" shows them");
  if (!arguments.folder)
    throw UsageError("copy needs a folder: -o DIR; words without an option are lists");
  if (arguments.folder->empty()) throw UsageError("-o: the name is empty");
  if (!arguments.pattern) return;
  try {
    (void)NamePattern(*arguments.pattern);
  } catch (const Failure& failure) {
    throw UsageError(failure.what());
  }
}

}  // namespace

void DefineCopy(CommandDefinition program) {
  const auto arguments = std::make_shared<CopyArguments>();
  CommandDefinition command =
      program.AddCommand("copy", "Copy the files of playlists, and the playlists beside them");
  command.AddPlaces("LIST", arguments->lists, 0,
                    "A playlist: its name, Folder/Name, id:PERSISTENT-ID or GROUP:POSITION;\n"
                    "a file that several have is copied once");
  command.AddText("-o,--output", arguments->folder, "DIR", "The folder that takes the copies");
  command.AddText("--name", arguments->pattern, "PATTERN",
                  "How files are named, \"{albumArtist}/{album}/{track} {name}\" unless told\n"
                  "otherwise: folders and fields, whose names --fields takes, too");
  command.AddFlag("--link", arguments->options.byLinks,
                  "Hard links instead of copies, where the disk can have them");
  command.AddFlag("--force", arguments->options.force,
                  "Replace files that are there and differ; those that do not are left");
  command.AddFlag("-n,--dry-run", arguments->isDryRun, "Say what would be copied, and do nothing");
  command.Makes([arguments] {
    Check(*arguments);
    return Task{.run = [arguments](Session& session) { return CopyLists(*arguments, session); },
                .isPaged = false};
  });
}

}  // namespace tavrel::host
