// What a user names as the library, whatever it is: copied and inflated as zlib does it in one go, told what it
// is as the plainest reading tells it, and given to the library.
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <strings.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "agent/Exports.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputFile.h"
#include "host/library/Diagnosis.h"
#include "host/library/FileFormat.h"
#include "host/library/LibraryPlace.h"
#include "host/library/Unpacking.h"
#include "system/BlockedSignals.h"
#include "system/Files.h"

using namespace tavrel::host;
using namespace std::string_view_literals;
using tavrel::fuzz::InputFile;
using tavrel::fuzz::Require;
using tavrel::system::FileDescriptor;

namespace {

constexpr std::size_t kMost = 1 << 20;  // a stream may become a thousand times longer
constexpr std::size_t kEnd = 1 << 16;   // of a file, in which its last tag is looked for
constexpr std::string_view kBlanks = " \t\r\n";

struct Copied {
  Unpacked result = Unpacked::Whole;
  std::string bytes;

  friend bool operator==(const Copied&, const Copied&) = default;
};

// One member of a gzip stream, from the input's front on. No more than some bytes above `kMost` are made.
Unpacked InflateMember(std::string_view& input, std::string& bytes) {
  z_stream stream{};
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
  stream.avail_in = static_cast<uInt>(input.size());
  Require(inflateInit2(&stream, 15 + 16) == Z_OK, "There is no memory");
  std::array<char, 1000> room;
  int result = Z_OK;
  while (result == Z_OK && bytes.size() <= kMost) {
    stream.next_out = reinterpret_cast<Bytef*>(room.data());
    stream.avail_out = static_cast<uInt>(room.size());
    result = inflate(&stream, Z_SYNC_FLUSH);
    bytes.append(room.data(), room.size() - stream.avail_out);
  }
  input.remove_prefix(input.size() - stream.avail_in);
  inflateEnd(&stream);
  if (bytes.size() > kMost) return Unpacked::TooLarge;
  if (result == Z_BUF_ERROR) return Unpacked::CutOff;
  return result == Z_STREAM_END ? Unpacked::Whole : Unpacked::Damaged;
}

Copied CopyPlainly(std::string_view input) {
  if (!input.starts_with("\x1F\x8B")) return {Unpacked::Whole, std::string(input)};
  Copied copied;
  while (copied.result == Unpacked::Whole && input.starts_with('\x1F')) {
    copied.result = InflateMember(input, copied.bytes);
  }
  return copied;
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Copied Copy(const std::string& from, std::size_t most) {
  static const InputFile target;
  target.Write("");
  const FileDescriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC));
  const FileDescriptor copy(open(target.path().c_str(), O_WRONLY | O_CLOEXEC));
  const Unpacked result = Unpack(source.get(), copy.get(), static_cast<std::int64_t>(most));
  return {result, BytesOf(target.path())};
}

// Without a limit that matters, with one that is just enough, and with one that is not.
void CheckCopies(const Copied& plain, const std::string& file) {
  if (plain.result == Unpacked::TooLarge) {
    Require(Copy(file, kMost).result == Unpacked::TooLarge, "Too much is copied");
    return;
  }
  for (const std::size_t most : {kMost, plain.bytes.size()}) {
    Require(Copy(file, most) == plain, "A copy differs");
  }
  if (plain.bytes.empty()) return;
  const Copied less = Copy(file, plain.bytes.size() - 1);
  Require(less.result == Unpacked::TooLarge && plain.bytes.starts_with(less.bytes),
          "More is copied than there is room for");
}

// A part of what is said of the file; empty when nothing is.
std::string_view WordFor(std::string_view start) {
  constexpr std::pair<std::string_view, std::string_view> kStarts[] = {
      {"bplist", "binary"},   {"hdfm", ".itl"},      {"hfma", ".musicdb"},
      {"\x1F\x8B", "gzip"},   {"PK\x03\x04", "ZIP"}, {"\xFF\xFE", "UTF-16"},
      {"\xFE\xFF", "UTF-16"}, {"\0<\0"sv, "UTF-16"}, {"<\0\0\0"sv, "UTF-16"},
  };
  for (const auto& [bytes, word] : kStarts) {
    if (start.starts_with(bytes)) return word;
  }
  if (start.size() >= 4 && start.starts_with("<\0"sv) && start[3] == '\0') return "UTF-16";
  if (start.starts_with("\xEF\xBB\xBF")) start.remove_prefix(3);
  const std::string text(start.substr(std::min(start.find_first_not_of(kBlanks), start.size())));
  const auto begins = [&](std::string_view tag) {
    return strncasecmp(text.c_str(), tag.data(), tag.size()) == 0;
  };
  return begins("<html") || begins("<!doctype html") ? "HTML"sv : ""sv;
}

void CheckFormat(std::string_view input) {
  const std::string_view start = input.substr(0, kFormatBytes);
  const std::string_view word = WordFor(start);
  for (const char* path : {"an export's.xml", kStandardInput}) {
    const auto format = KnownFormat(start, path);
    Require(format.has_value() == !word.empty(), "A file is taken for another");
    if (!format) continue;
    Require(format->what.find(word) != std::string::npos && format->what.ends_with('.'),
            "Another file is told of");
    Require(format->help.starts_with("\n  "), "A help is no line");
  }
}

// One character after the other.
std::string_view FirstElementPlainly(std::string_view text) {
  enum { kText, kOpen, kDeclaration, kComment } state = kText;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i);
    if (state == kOpen && rest.front() != '!' && rest.front() != '?') {
      return rest.substr(0, rest.find_first_of("/> \t\r\n"));
    }
    if (state == kText && rest.front() == '<') {
      state = kOpen;
    } else if (state == kOpen) {
      state = rest.starts_with("!--") ? kComment : kDeclaration;
    } else if ((state == kDeclaration && rest.front() == '>') ||
               (state == kComment && rest.starts_with("-->"))) {
      state = kText;
    }
  }
  return {};
}

bool EndsPlainly(std::string_view file) {
  std::string end(file.substr(file.size() - std::min(file.size(), kEnd)));
  constexpr std::string_view kTag = "</plist";
  const auto tag = std::find_end(end.begin(), end.end(), kTag.begin(), kTag.end());
  if (tag == end.end()) return false;
  const auto next = std::find_if(tag + kTag.size(), end.end(), [](char character) {
    return kBlanks.find(character) == std::string_view::npos;
  });
  return next != end.end() && *next == '>';
}

// What begins like a file, and what ends like it: the input by itself, and with only its second half within
// the bytes that are looked at.
void CheckEnd(std::string_view input) {
  static const InputFile file;
  const std::string padded = std::string(input) + std::string(kEnd - input.size() / 2, ' ');
  for (const std::string_view bytes : {input, std::string_view(padded)}) {
    file.Write(bytes);
    Require(EndsLikePropertyList(file.path()) == EndsPlainly(bytes), "An end is taken for another");
  }
}

// The signals that end a program belong to the fuzzer, whose own clock is one of them; for those that are
// ignored the host does nothing.
class IgnoredSignals {
 public:
  IgnoredSignals() {
    for (std::size_t i = 0; i < actions_.size(); ++i) {
      struct sigaction ignore = {};
      ignore.sa_handler = SIG_IGN;
      sigaction(kSignals[i], &ignore, &actions_[i]);
    }
  }
  IgnoredSignals(const IgnoredSignals&) = delete;
  IgnoredSignals& operator=(const IgnoredSignals&) = delete;
  ~IgnoredSignals() {
    for (std::size_t i = 0; i < actions_.size(); ++i) {
      sigaction(kSignals[i], &actions_[i], nullptr);
    }
  }

 private:
  static constexpr const auto& kSignals = tavrel::system::kEndingSignals;
  std::array<struct sigaction, std::size(kSignals)> actions_ = {};
};

// As the program does it, up to what it says of a file that is no library.
void CheckPlace(const Copied& plain, const std::string& file) {
  const IgnoredSignals ignored;
  Options options;
  options.library = file;
  try {
    const LibraryPlace place(options);
    const bool isWhole = plain.result == Unpacked::Whole || plain.result == Unpacked::CutOff;
    Require(isWhole || plain.result == Unpacked::TooLarge, "A damaged file is read");
    Require(!isWhole || BytesOf(place.File()) == plain.bytes, "Another file is read");
    setenv("HOME", place.Home()->c_str(), 1);
    const bool isLoaded = AgentInitializer() == 0;
    const Failure failure =
        isLoaded ? DiagnoseStranger(place.Path(), place.File()) : place.WhyNotLoaded();
    Require(std::string_view(failure.what()).find(file) != std::string_view::npos,
            "A file is not told of");
    AgentFinalizer();
  } catch (const Failure&) {
    // What is too large here may be damaged behind.
    Require(plain.result == Unpacked::Damaged || plain.result == Unpacked::TooLarge,
            "A good file is refused");
  }
}

void ReadHostInputs(std::string_view input) {
  if (input.size() > kEnd) return;
  static const InputFile file;
  file.Write(input);
  const Copied plain = CopyPlainly(input);
  CheckCopies(plain, file.path());
  CheckFormat(input);
  Require(FirstElement(input) == FirstElementPlainly(input), "Another element is the first");
  CheckEnd(input);
  CheckPlace(plain, file.path());
}

const tavrel::fuzz::Target hostInputsTarget("host_inputs", ReadHostInputs);

}  // namespace
