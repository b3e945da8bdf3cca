#include "host/library/FileFormat.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "host/library/Invocation.h"
#include "host/library/Options.h"
#include "system/Files.h"
#include "text/Ascii.h"

namespace tavrel::host {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kEndBytes = 1 << 16;
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr const char* kLetItExport =
    "\n  In iTunes: File, Library, Export Library. In Music: the same."
    "\n  Then: tavrel -l Library.xml";

// A command that turns the file into a library file, on its way into the program.
std::string Through(std::string_view converter, const std::string& path) {
  const bool isInput = path == kStandardInput;
  return fmt::format("\n  {}{}{} | tavrel -l -", isInput ? "… | " : "", converter,
                     isInput ? "" : " < " + Quoted(path));
}

// Python is nearly everywhere; plutil comes with every Mac. The order of the tracks is kept.
constexpr std::string_view kPlutil = "plutil -convert xml1 -o - -";
constexpr std::string_view kPlistlib =
    "python3 -c 'import plistlib, sys; plistlib.dump(plistlib.load(sys.stdin.buffer), "
    "sys.stdout.buffer, sort_keys=False)'";

std::string_view EncodingOf(std::string_view start) {
  if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF")) return "UTF-16";
  if (start.starts_with("<\0"sv) && start.size() >= 4 && start[3] == '\0') return "UTF-16LE";
  if (start.starts_with("\0<\0"sv)) return "UTF-16BE";
  return {};
}

std::string LowerStart(std::string_view start) {
  if (start.starts_with(kByteOrderMark)) start.remove_prefix(kByteOrderMark.size());
  start.remove_prefix(std::min(start.find_first_not_of(kBlanks), start.size()));
  std::string lower(start.substr(0, 16));
  std::transform(lower.begin(), lower.end(), lower.begin(), text::ToLowerCase);
  return lower;
}

bool IsWebPage(std::string_view start) {
  const std::string lower = LowerStart(start);
  return lower.starts_with("<!doctype html") || lower.starts_with("<html");
}

bool IsNameEnd(char character) {
  return character == '>' || character == '/' || kBlanks.find(character) != std::string_view::npos;
}

}  // namespace

std::optional<FileFormat> KnownFormat(std::string_view start, const std::string& path) {
  if (start.starts_with("bplist")) {
    return FileFormat{"It is a binary property list, not XML.",
                      Through(kPlistlib, path) + Through(kPlutil, path)};
  }
  if (start.starts_with("hdfm")) {
    return FileFormat{"It is iTunes' own database (.itl), not the XML file.", kLetItExport};
  }
  if (start.starts_with("hfma")) {
    return FileFormat{"It is Music's own database (.musicdb), not the XML file.", kLetItExport};
  }
  if (start.starts_with("\x1F\x8B")) {
    return FileFormat{"It is compressed with gzip.", path == kStandardInput
                                                         ? Through("gzip -dc", path)
                                                         : "\n  tavrel -l " + Quoted(path)};
  }
  if (start.starts_with("PK\x03\x04")) {
    const bool isInput = path == kStandardInput;
    return FileFormat{"It is a ZIP archive.",
                      isInput ? Through("funzip", path)
                              : fmt::format("\n  unzip -p {} | tavrel -l -", Quoted(path))};
  }
  const std::string_view encoding = EncodingOf(start);
  if (!encoding.empty()) {
    return FileFormat{"It seems to be UTF-16 text; the library reads UTF-8 only.",
                      Through(fmt::format("iconv -f {} -t UTF-8", encoding), path)};
  }
  if (IsWebPage(start)) {
    return FileFormat{"It is a web page (HTML), perhaps one that was saved in place of the file.",
                      "\n  Fetch the file itself, not the page that shows it."};
  }
  return std::nullopt;
}

std::string_view FirstElement(std::string_view start) {
  for (std::size_t at = start.find('<'); at != std::string_view::npos; at = start.find('<', at)) {
    const std::string_view rest = start.substr(at + 1);
    const bool isComment = rest.starts_with("!--");
    if (!isComment && !rest.starts_with('!') && !rest.starts_with('?')) {
      const auto* end = std::find_if(rest.begin(), rest.end(), IsNameEnd);
      return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    }
    at = start.find(isComment ? "-->" : ">", at);
    if (at == std::string_view::npos) break;
  }
  return {};
}

bool EndsLikePropertyList(const std::string& file) {
  std::size_t size = 0;
  const system::FileDescriptor opened = system::OpenRegularFile(file.c_str(), size);
  if (!opened) return true;
  std::vector<char> end(std::min(size, kEndBytes));
  const std::size_t got = system::ReadAt(opened.get(), size - end.size(), end.data(), end.size());
  if (got < end.size()) return true;
  std::string_view text(end.data(), end.size());
  const std::size_t at = text.rfind("</plist");
  if (at == std::string_view::npos) return false;
  text.remove_prefix(at + "</plist"sv.size());
  const std::size_t next = text.find_first_not_of(kBlanks);
  return next != std::string_view::npos && text[next] == '>';
}

}  // namespace tavrel::host
