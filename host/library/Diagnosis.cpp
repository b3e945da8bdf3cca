#include "host/library/Diagnosis.h"

#include <errno.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <string_view>
#include <vector>

#include "host/output/Format.h"
#include "system/Files.h"
#include "text/Utf8.h"

namespace tavrel::host {
namespace {

constexpr const char* kAdvice =
    "\n  In iTunes 12.2 and later: Preferences, Advanced, \"Share iTunes Library XML\"."
    "\n  In Music: File, Library, Export Library; then: tavrel --library FILE";

constexpr std::size_t kPieceSize = 1 << 20;
constexpr std::size_t kLongestCharacter = 4;

Failure Missing(const std::string& path, const std::string& detail) {
  return {ExitCode::NoLibrary, fmt::format("there is no iTunes library file at {}{}{}", path,
                                           detail.empty() ? "" : "\n  " + detail, kAdvice)};
}

Failure Unusable(const std::string& path, const std::string& reason, const char* advice = "") {
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
  return Missing(path, "");
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

bool IsUtf16(std::string_view start) {
  if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF")) return true;
  if (start.size() < 4) return false;
  const bool littleEndian = start[0] == '<' && start[1] == '\0' && start[3] == '\0';
  const bool bigEndian = start[0] == '\0' && start[1] == '<' && start[2] == '\0';
  return littleEndian || bigEndian;
}

// What a file's first bytes give away; empty when they look like text.
std::string_view KnownFormat(std::string_view start) {
  if (start.starts_with("bplist")) return "It is a binary property list, not XML.";
  if (start.starts_with("hdfm")) return "It is iTunes' own database (.itl), not the XML file.";
  if (IsUtf16(start)) return "It seems to be UTF-16 text; the library reads UTF-8 only.";
  return {};
}

// Reads until `buffer` is full, the file ends or an error; false on an error, and errno says which.
bool Fill(int descriptor, std::vector<char>& buffer, std::size_t& length) {
  const std::ptrdiff_t count =
      system::ReadFully(descriptor, buffer.data() + length, buffer.size() - length);
  if (count < 0) return false;
  length += static_cast<std::size_t>(count);
  return true;
}

Failure DiagnoseText(const std::string& path, int descriptor) {
  std::vector<char> buffer(kPieceSize);
  TextPosition position;
  ElementSearch element;
  bool atStart = true;
  for (std::size_t length = 0;;) {
    if (!Fill(descriptor, buffer, length)) return Unusable(path, std::strerror(errno));
    const bool atEnd = length < buffer.size();
    const std::string_view piece(buffer.data(), length);
    if (atStart) {
      const std::string_view format = KnownFormat(piece);
      if (!format.empty()) return Unusable(path, std::string(format), kAdvice);
      atStart = false;
    }

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

Failure Diagnose(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return DiagnoseMissing(path);
    return Unusable(path, std::strerror(errno));
  }
  if (S_ISDIR(status.st_mode)) return Unusable(path, "It is a folder.");
  if (!S_ISREG(status.st_mode)) return Unusable(path, "It is not a regular file.");
  if (status.st_size == 0) return Unusable(path, "It is empty.", kAdvice);
  if (status.st_size > system::kLargestFile) {
    return Unusable(path, fmt::format("It has {} bytes; the library reads files of up to {} bytes.",
                                      Grouped(status.st_size), Grouped(system::kLargestFile)));
  }
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return Unusable(path, std::strerror(errno));
  const Failure failure = DiagnoseText(path, descriptor);
  ::close(descriptor);
  return failure;
}

}  // namespace tavrel::host
