#include "host/library/Session.h"

#include <filesystem>

namespace tavrel::host {

std::string UserPath(const Session& session, std::string_view location) {
  const std::string inside = session.home.value_or("") + "/Music/iTunes/";
  if (!session.place.IsLinked() || !location.starts_with(inside)) return std::string(location);
  location.remove_prefix(inside.size());
  return std::filesystem::absolute(session.libraryPath).parent_path() / location;
}

}  // namespace tavrel::host
