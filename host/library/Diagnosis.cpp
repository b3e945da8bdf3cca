#include "host/library/Diagnosis.h"

#include <errno.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "host/library/FileFormat.h"
#include "host/library/Invocation.h"
#include "host/library/LibraryFolder.h"
#include "host/output/Format.h"
#include "system/Files.h"
#include "text/Utf8.h"

namespace tavrel::host {
namespace {

constexpr const char* kAdvice =
    "\n  In iTunes 12.2 and later: Preferences, Advanced, \"Share iTunes Library XML\"."
    "\n  In Music: File, Library, Export Library; then: tavrel --library FILE";

constexpr std::size_t kReadAtOnce = 1 << 20;
constexpr std::size_t kLongestCharacter = 4;

Failure Missing(const std::string& path, const std::string& detail) {
  return {ExitCode::NoLibrary, fmt::format("there is no iTunes library file at {}{}{}", path,
                                           detail.empty() ? "" : "\n  " + detail, kAdvice)};
}

Failure Unusable(const std::string& path, const std::string& reason, std::string_view advice = "") {
  return {ExitCode::Unreadable,
          fmt::format("cannot read the library file {}\n  {}{}", path, reason, advice)};
}

Failure DiagnoseMissing(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode)) {
    std::error_code ignored;
    const std::string target = std::filesystem::read_symlink(path, ignored);
    return Missing(path, fmt::format("It is a link to {}, which does not exist.", target));
  }
  std::string hint;
  const std::vector<std::string> near = NearFiles(path);
  if (!near.empty()) hint = "Is it one of these?";
  for (const std::string& file : near) hint += "\n    tavrel -l " + Quoted(file);
  return Missing(path, hint);
}

// Follows a text's bytes, which are known to be UTF-8.
class TextPosition {
 public:
  void Walk(std::string_view text) {
    bytes_ += static_cast<std::int64_t>(text.size());
    for (const char byte : text) {
      if (byte == '\n') {
        ++line_;
        column_ = 1;
      } else if ((static_cast<unsigned char>(byte) & 0xC0u) != 0x80u) {
        ++column_;
      }
    }
  }

  // All three count from 1.
  [[nodiscard]] std::string Describe() const {
    return fmt::format("byte {} (line {}, column {})", Grouped(bytes_ + 1), Grouped(line_),
                       Grouped(column_));
  }

 private:
  std::int64_t bytes_ = 0;
  std::int64_t line_ = 1;
  std::int64_t column_ = 1;
};

// Looks for something that starts like an element. A zero byte ends the text for the library.
class ElementSearch {
 public:
  void Walk(std::string_view text) {
    for (const char byte : text) {
      if (found_ || ended_) return;
      ended_ = byte == '\0';
      found_ = previous_ == '<' && !ended_ && std::strchr("!?/<> \t\r\n", byte) == nullptr;
      previous_ = byte;
    }
  }

  [[nodiscard]] bool Found() const { return found_; }

 private:
  char previous_ = '\0';
  bool found_ = false;
  bool ended_ = false;
};

// Reads until `buffer` is full, the file ends or an error; false on an error, and errno says which.
bool Fill(int descriptor, std::vector<char>& buffer, std::size_t& length) {
  const std::ptrdiff_t count =
      system::ReadFully(descriptor, buffer.data() + length, buffer.size() - length);
  if (count < 0) return false;
  length += static_cast<std::size_t>(count);
  return true;
}

std::string StartOf(int descriptor) {
  std::string start(kFormatBytes, '\0');
  start.resize(system::ReadAt(descriptor, 0, start.data(), start.size()));
  return start;
}

Failure DiagnoseText(const std::string& path, int descriptor) {
  std::vector<char> buffer(kReadAtOnce);
  TextPosition position;
  ElementSearch element;
  for (std::size_t length = 0;;) {
    if (!Fill(descriptor, buffer, length)) return Unusable(path, std::strerror(errno));
    const bool atEnd = length < buffer.size();
    const std::string_view piece(buffer.data(), length);
    const std::size_t valid = text::ValidUtf8Prefix(piece.data(), length);
    position.Walk(piece.substr(0, valid));
    element.Walk(piece.substr(0, valid));
    // What is left may be the start of a character that goes on in the next piece.
    if (length - valid >= kLongestCharacter || (atEnd && valid < length)) {
      return Unusable(path, fmt::format("It is not UTF-8: {} is 0x{:02X}.", position.Describe(),
                                        static_cast<unsigned char>(piece[valid])));
    }
    if (atEnd) break;
    std::memmove(buffer.data(), buffer.data() + valid, length - valid);
    length -= valid;
  }
  if (!element.Found()) return Unusable(path, "It holds no XML element.", kAdvice);
  return Unusable(path, "Its first XML element has no end, or there is too little memory for it.");
}

}  // namespace

Failure Diagnose(const std::string& path, const std::string& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return DiagnoseMissing(path);
    return Unusable(path, std::strerror(errno));
  }
  if (S_ISDIR(status.st_mode)) return Unusable(path, "It is a folder.");
  if (!S_ISREG(status.st_mode)) {
    return Unusable(path, "It is not a regular file.",
                    fmt::format("\n  tavrel -l - < {}", Quoted(path)));
  }
  if (status.st_size == 0) return Unusable(path, "It is empty.", kAdvice);
  if (status.st_size > system::kLargestFile) {
    return Unusable(path, fmt::format("It has {} bytes; the library reads files of up to {} bytes.",
                                      Grouped(status.st_size), Grouped(system::kLargestFile)));
  }
  const system::FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!opened) return Unusable(path, std::strerror(errno));
  const std::optional<FileFormat> format = KnownFormat(StartOf(opened.get()), path);
  if (format) return Unusable(path, format->what, format->help);
  return DiagnoseText(path, opened.get());
}

Failure DiagnoseStranger(const std::string& path, const std::string& file) {
  const system::FileDescriptor opened = system::OpenRegularFile(file.c_str());
  const std::string start = opened ? StartOf(opened.get()) : std::string();
  const std::optional<FileFormat> format = KnownFormat(start, path);
  if (format) return Unusable(path, format->what, format->help);
  const std::string_view element = FirstElement(start);
  if (element != "plist") {
    return Unusable(
        path, fmt::format("It is no property list: its first element is <{}>.", element), kAdvice);
  }
  if (!EndsLikePropertyList(file))
    return Unusable(path, "It is cut off before its tracks.", kAdvice);
  return Unusable(path, "It is a property list without tracks, and so no iTunes library.", kAdvice);
}

Failure NoLibraryAt(const std::string& path, const std::string& home) {
  const std::vector<std::string> files = FindLibraryFiles(home);
  if (!files.empty()) {
    return Missing(path,
                   fmt::format("There is {}.\n    tavrel -l {}", files.front(), Quoted(home)));
  }
  const std::string others = DescribeOtherFiles(home);
  return Missing(path, others.empty() ? others : others.substr(std::strlen("\n  ")));
}

Failure NoLibraryIn(const std::string& folder) {
  const std::string message = "there is no iTunes library file in " + folder;
  std::string others = DescribeOtherFiles(folder);
  const std::vector<std::string> near = NearLibraries(folder);
  if (near.empty()) {
    if (others.empty()) others = DescribeEntries(folder);
    return {ExitCode::NoLibrary, message + others + kAdvice};
  }
  others += near.size() == 1 ? "\n  But this has one:" : "\n  But these have one:";
  for (const std::string& library : near) others += "\n    tavrel -l " + Quoted(library);
  return {ExitCode::NoLibrary, message + others};
}

}  // namespace tavrel::host
