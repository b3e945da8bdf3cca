#include "host/library/Session.h"

#include <filesystem>

#include "host/library/FileTally.h"

namespace tavrel::host {

std::string UserPath(const Session& session, std::string_view location) {
  const std::string inside = session.home.value_or("") + "/Music/iTunes/";
  if (!session.place.IsLinked() || !location.starts_with(inside)) return std::string(location);
  location.remove_prefix(inside.size());
  return std::filesystem::absolute(session.libraryPath).parent_path() / location;
}

void TellWhatWasFound(const FileTally& tally, const Session& session) {
  if (session.options.quiet) return;
  if (const std::string line = tally.Line(); !line.empty()) Complain(line);
}

}  // namespace tavrel::host
