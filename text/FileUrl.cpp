#include "text/FileUrl.h"

#include <uriparser/Uri.h>

#include <algorithm>
#include <new>

#include "text/Ascii.h"
#include "text/UrlCharacters.h"
#include "text/Utf8.h"

namespace tavrel::text {
namespace {

bool IsWellFormed(std::string_view url) noexcept {
  bool inFragment = false;
  for (std::size_t i = 0; i < url.size(); ++i) {
    if (url[i] == '%') {
      if (i + 2 >= url.size() || HexDigitValue(url[i + 1]) > 15 || HexDigitValue(url[i + 2]) > 15)
        return false;
      i += 2;
    } else if (url[i] == '#' && !inFragment) {
      inFragment = true;
    } else if (!IsUrlCharacter(url[i])) {
      return false;
    }
  }
  return true;
}

struct UrlParts {
  std::string_view scheme;
  std::string_view authority;
  std::string_view path;
};

// RFC 2396, appendix B. A generic parser would not do: those of today follow RFC 3986 and reject
// URLs that older library files hold (a ':' in a relative path, a host with a name for its port).
UrlParts Split(std::string_view url) noexcept {
  UrlParts parts;
  const std::size_t colon = url.find_first_of(":/?#");
  if (colon != std::string_view::npos && colon > 0 && url[colon] == ':') {
    parts.scheme = url.substr(0, colon);
    url.remove_prefix(colon + 1);
  }
  if (url.starts_with("//")) {
    url.remove_prefix(2);
    parts.authority = url.substr(0, url.find_first_of("/?#"));
    url.remove_prefix(parts.authority.size());
  }
  const auto end =
      std::find_if(url.begin(), url.end(), [](char c) { return c == '?' || c == '#'; });
  parts.path = url.substr(0, static_cast<std::size_t>(end - url.begin()));
  return parts;
}

std::string Unescape(std::string_view escaped) {
  std::string text(escaped);
  const char* end = uriUnescapeInPlaceExA(text.data(), URI_FALSE, URI_BR_DONT_TOUCH);
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

bool HoldsNul(const std::string& text) noexcept {
  return text.find('\0') != std::string::npos;
}

}  // namespace

bool IsFileUrl(std::string_view url) noexcept {
  constexpr std::string_view kStart = "file:";
  return EqualIgnoringCase(url.substr(0, kStart.size()), kStart);
}

std::string FileUrlOfPath(const std::string& path) {
  std::string url(8 + 3 * path.size(), '\0');
  if (uriUnixFilenameToUriStringA(path.c_str(), url.data()) != URI_SUCCESS) throw std::bad_alloc();
  url.resize(url.find('\0'));
  return url;
}

std::optional<std::string> PathOfFileUrl(std::string_view url) {
  if (!IsWellFormed(url)) return std::nullopt;
  const UrlParts parts = Split(url);
  if (!EqualIgnoringCase(parts.scheme, "file")) return std::nullopt;
  if (!parts.authority.empty() && !EqualIgnoringCase(parts.authority, "localhost")) {
    return std::nullopt;
  }
  std::string path = Unescape(parts.path);
  if (HoldsNul(path)) return std::nullopt;
  return path;
}

std::optional<std::string> PathOfUrl(std::string_view url) {
  if (!IsWellFormed(url)) return std::nullopt;
  std::string path = Unescape(Split(url).path);
  if (HoldsNul(path) || !IsValidUtf8(path)) return std::nullopt;
  if (path.ends_with('/')) path.pop_back();
  return path;
}

}  // namespace tavrel::text
