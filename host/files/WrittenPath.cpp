#include "host/files/WrittenPath.h"

#include <algorithm>

#include "host/files/NormalForms.h"
#include "text/Ascii.h"
#include "text/FileUrl.h"
#include "text/OrdinaryUrl.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kScheme = "file:";

bool IsLetter(char character) noexcept {
  const char lower = text::ToLowerCase(character);
  return lower >= 'a' && lower <= 'z';
}

// "C:" or "C:\..."
bool IsOnDrive(std::string_view path) noexcept {
  return path.size() >= 2 && IsLetter(path[0]) && path[1] == ':' &&
         (path.size() == 2 || path[2] == '/' || path[2] == '\\');
}

}  // namespace

std::string WithoutSlashAtEnd(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

std::optional<std::string> WrittenPath(std::string_view fileUrl) {
  const std::string url(fileUrl);
  std::string ordinary(url.size(), '\0');
  if (const auto length = text::PathOfOrdinaryUrl(url.c_str(), ordinary.data())) {
    ordinary.resize(*length);
    return ordinary;
  }
  const std::string_view rest = fileUrl.substr(std::min(kScheme.size(), fileUrl.size()));
  std::string_view machine;
  if (rest.starts_with("//")) machine = rest.substr(2, rest.substr(2).find_first_of("/?#"));
  std::optional<std::string> path = text::PathOfUrl(fileUrl);
  if (!path || machine.empty() || text::EqualIgnoringCase(machine, "localhost")) return path;
  return "//" + std::string(machine) + *path;
}

std::optional<std::string> FullPath(std::string_view text) {
  std::string path(text);
  if (text::IsFileUrl(text)) {
    std::optional<std::string> written = WrittenPath(text);
    if (!written) return std::nullopt;
    path = std::move(*written);
  } else if (IsOnDrive(text) || text.starts_with("\\\\")) {
    std::replace(path.begin(), path.end(), '\\', '/');
    if (IsOnDrive(text)) path.insert(0, 1, '/');
  }
  if (!path.starts_with('/')) return std::nullopt;
  while (path.ends_with('/')) path.pop_back();
  return path;
}

std::string ComparablePath(std::string_view path) {
  std::string comparable = ComposedPath(path);
  if (comparable.empty()) return comparable;
  const bool isShare = comparable.starts_with("//");
  const bool isDrive = IsOnDrive(std::string_view(comparable).substr(isShare ? 0 : 1));
  if (!isShare && !isDrive) return comparable;
  const std::size_t end = isShare ? comparable.find('/', 2) : 2;
  const auto stop =
      comparable.begin() + static_cast<std::ptrdiff_t>(std::min(end, comparable.size()));
  std::transform(comparable.begin(), stop, comparable.begin(), text::ToLowerCase);
  return comparable;
}

std::optional<std::string_view> RestBelow(std::string_view folder, std::string_view path,
                                          std::string_view written) noexcept {
  if (!path.starts_with(folder)) return std::nullopt;
  if (path.size() > folder.size() && path[folder.size()] != '/') return std::nullopt;
  for (auto left = std::count(folder.begin(), folder.end(), '/'); left > 0; --left) {
    written.remove_prefix(std::min(written.find('/') + 1, written.size()));
  }
  // What is left begins with the folder's own last name.
  const std::size_t end = std::min(written.find('/'), written.size());
  written.remove_prefix(std::min(end + 1, written.size()));
  return written;
}

}  // namespace tavrel::host
