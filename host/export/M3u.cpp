#include "host/export/M3u.h"

#include "host/output/Format.h"
#include "host/output/Text.h"
#include "text/FileUrl.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kHead = "#EXTM3U\n";

// Players take blanks from both ends of a line.
bool StandsInALine(std::string_view path) {
  return !path.empty() && path.front() != ' ' && path.back() != ' ' && Clean(path) == path;
}

// A relative path that begins like something else: a comment, or the scheme of a URL.
bool LooksLikeMore(std::string_view path) {
  return path.front() == '#' || path.substr(0, path.find('/')).find(':') != std::string_view::npos;
}

}  // namespace

M3uText::M3uText(std::string_view name, M3uEncoding encoding) : encoding_(encoding), text_(kHead) {
  const std::string clean = Compose(name);
  if (!clean.empty()) text_ += "#PLAYLIST:" + clean + '\n';
}

void M3uText::Add(const PlaylistEntry& entry) {
  const std::int64_t time = entry.milliseconds;
  text_ += "#EXTINF:" + (time > 0 ? std::to_string(Rounded(time, 1000)) : "-1") + ',';
  if (entry.artist) text_ += Compose(*entry.artist) + " - ";
  text_ += Compose(entry.name.value_or("")) + '\n';
  if (!entry.url.empty()) {
    text_ += entry.url;
  } else if (!StandsInALine(entry.written)) {
    text_ += text::FileUrlOfPath(std::string(entry.path));
  } else {
    if (LooksLikeMore(entry.written)) text_ += "./";
    text_ += entry.written;
  }
  text_ += '\n';
}

std::string M3uText::Finish() {
  if (encoding_ == M3uEncoding::Utf8) return std::move(text_);
  if (std::optional<std::string> latin1 = ToLatin1(text_)) return *std::move(latin1);
  isBeyondLatin1_ = true;
  return text_.insert(kHead.size(), "#EXTENC:UTF-8\n");
}

std::optional<std::string> ToLatin1(std::string_view utf8) {
  std::string latin1;
  latin1.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character first = FirstCharacter(utf8);
    if (first.code < 0 || first.code > 0xFF) return std::nullopt;
    latin1 += static_cast<char>(first.code);
    utf8.remove_prefix(first.length);
  }
  return latin1;
}

}  // namespace tavrel::host
