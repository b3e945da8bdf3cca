#include "host/export/DatabaseFile.h"

#include <filesystem>

#include "host/export/Database.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/NewFile.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

std::string PathOf(const std::string& target) {
  std::error_code error;
  const bool isFolder = target.ends_with('/') || std::filesystem::is_directory(target, error);
  return isFolder ? (std::filesystem::path(target) / "library.sqlite").string() : target;
}

DatabaseCounts WriteTo(const std::string& path, IfThere ifThere, Session& session) {
  const Failure taken(ExitCode::Failed, path + " is there already; --force replaces it");
  if (ifThere == IfThere::Keep && IsTaken(path)) throw taken;
  const std::size_t slash = path.rfind('/');
  if (slash != std::string::npos && slash > 0) MakeFolders(path.substr(0, slash));
  NewFile file(path);
  DatabaseCounts counts = WriteDatabase(file.TemporaryPath(), path, session);
  if (!file.Finish(ifThere)) throw taken;
  return counts;
}

}  // namespace

ExitCode ExportDatabase(const DatabaseFileOptions& options, Session& session) {
  const std::string path = PathOf(options.target);
  const IfThere ifThere = options.force ? IfThere::Replace : IfThere::Keep;
  const DatabaseCounts counts =
      options.dryRun ? CountForDatabase(session) : WriteTo(path, ifThere, session);
  TellWhatWasFound(counts.tally, session);
  if (session.options.json) {
    session.output.WriteLine(JsonObject{
        {"file", path},
        {"format", "sqlite"},
        {"dryRun", options.dryRun},
        {"tracks", counts.tracks},
        {"playlists", counts.playlists},
        {"items", counts.items}}.Text());
  } else if (!session.options.quiet) {
    session.output.WriteLine(
        Counted(counts.tracks, "track") + ", " + Counted(counts.playlists, "playlist") + " with " +
        Counted(counts.items, "song") +
        (options.dryRun ? " would be written to " : " written to ") + Clean(path));
  }
  return ExitCode::Done;
}

}  // namespace tavrel::host
