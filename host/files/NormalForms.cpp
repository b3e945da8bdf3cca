#include "host/files/NormalForms.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include "text/Ascii.h"
#include "text/Utf8.h"

namespace tavrel::host {
namespace {

void AppendMapped(std::string& path, std::string_view name, int options) {
  if (name.size() > kLongestName || !text::IsValidUtf8(name)) {
    path += name;
    return;
  }
  utf8proc_uint8_t* mapped = nullptr;
  const utf8proc_ssize_t length = utf8proc_map(
      reinterpret_cast<const utf8proc_uint8_t*>(name.data()),
      static_cast<utf8proc_ssize_t>(name.size()), &mapped, static_cast<utf8proc_option_t>(options));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, &std::free);
  if (length == UTF8PROC_ERROR_NOMEM) throw std::bad_alloc();
  if (length < 0) {
    path += name;
  } else {
    path.append(reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(length));
  }
}

std::string MapNames(std::string_view path, int options) {
  if (text::IsAscii(path)) return std::string(path);
  std::string mapped;
  for (;;) {
    const std::size_t end = std::min(path.find('/'), path.size());
    AppendMapped(mapped, path.substr(0, end), options);
    if (end == path.size()) return mapped;
    mapped += '/';
    path.remove_prefix(end + 1);
  }
}

}  // namespace

std::string ComposedPath(std::string_view path) {
  return MapNames(path, UTF8PROC_STABLE | UTF8PROC_COMPOSE);
}

std::string DecomposedPath(std::string_view path) {
  return MapNames(path, UTF8PROC_STABLE | UTF8PROC_DECOMPOSE);
}

std::string AlikeName(std::string_view name) {
  std::string alike;
  if (text::IsAscii(name)) {
    alike = name;
    std::transform(alike.begin(), alike.end(), alike.begin(), text::ToLowerCase);
  } else {
    AppendMapped(alike, name, UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
  }
  return alike;
}

}  // namespace tavrel::host
