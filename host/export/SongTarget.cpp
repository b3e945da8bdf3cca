#include "host/export/SongTarget.h"

#include <algorithm>
#include <array>

#include "text/Ascii.h"

namespace tavrel::host {

FieldSet FieldsOfTarget() {
  return SetOf({Field::Location, Field::Path, Field::Status});
}

SongTarget TargetOf(const SongRecord& song, bool keepMissing) {
  if (song.HasFile()) return {std::string(*song.Text(Field::Path)), {}, {}};
  const std::string_view status = song.Text(Field::Status).value_or("none");
  const std::string_view location = song.Text(Field::Location).value_or("");
  if (status == "remote" && IsStreamUrl(location)) return {{}, location, {}};
  const std::string_view sought = song.SoughtPath().value_or("");
  if (status != "missing" || !keepMissing || sought.empty()) return {{}, {}, status};
  return {std::string(sought), {}, {}};
}

bool IsStreamUrl(std::string_view location) {
  constexpr std::array<std::string_view, 5> kSchemes{"http", "https", "mms", "mmsh", "rtsp"};
  const std::size_t colon = location.find("://");
  if (colon == std::string_view::npos) return false;
  std::string scheme(location.substr(0, colon));
  std::transform(scheme.begin(), scheme.end(), scheme.begin(), text::ToLowerCase);
  const bool isKnown = std::find(kSchemes.begin(), kSchemes.end(), scheme) != kSchemes.end();
  return isKnown && std::all_of(location.begin(), location.end(), [](char letter) {
           return letter > ' ' && letter < 0x7F &&
                  std::string_view("\"<>\\^`{|}").find(letter) == std::string_view::npos;
         });
}

std::string RelativePath(std::string_view folder, std::string_view path) {
  const std::string from = std::string(folder) + '/';
  std::size_t common = 0;  // what both begin with, a '/' at its end
  for (std::size_t i = 0; i < std::min(from.size(), path.size()) && from[i] == path[i]; ++i) {
    if (from[i] == '/') common = i + 1;
  }
  std::string relative;
  for (auto up = std::count(from.begin() + static_cast<std::ptrdiff_t>(common), from.end(), '/');
       up > 0; --up) {
    relative += "../";
  }
  path.remove_prefix(common);
  path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
  return relative.append(path);
}

}  // namespace tavrel::host
