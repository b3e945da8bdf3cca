#include "host/naming/FileNames.h"

#include <algorithm>
#include <array>

#include "host/output/Text.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

bool BeginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// The bytes of the character at the start of a text.
std::size_t CharacterLength(std::string_view text) {
  const auto next = std::find_if(text.begin() + 1, text.end(), BeginsCharacter);
  return static_cast<std::size_t>(next - text.begin());
}

// What stands before the first dot is a device's name in some systems, whatever follows.
bool NamesDevice(std::string_view stem) {
  constexpr std::array<std::string_view, 6> kDevices{"con", "prn",    "aux",
                                                     "nul", "conin$", "conout$"};
  constexpr std::array<std::string_view, 13> kNumbers{"0", "1", "2", "3", "4", "5", "6",
                                                      "7", "8", "9", "¹", "²", "³"};
  std::string name = Fold(stem.substr(0, stem.find('.')));
  name.erase(name.find_last_not_of(' ') + 1);
  if (std::find(kDevices.begin(), kDevices.end(), name) != kDevices.end()) return true;
  if (!name.starts_with("com") && !name.starts_with("lpt")) return false;
  return std::find(kNumbers.begin(), kNumbers.end(), name.substr(3)) != kNumbers.end();
}

std::string_view WithoutEnd(std::string_view stem) {
  return stem.substr(0, stem.find_last_not_of(". ") + 1);
}

std::string WholeStem(std::string_view stem) {
  const std::string_view trimmed = WithoutEnd(stem);
  if (trimmed.empty()) return kUntitled;
  return std::string(NamesDevice(trimmed) ? "_" : "").append(trimmed);
}

std::string WithNumber(std::string_view stem, const std::string& number,
                       std::string_view extension) {
  const std::size_t room = kLongestFileName - number.size() - extension.size();
  return std::string(WithoutEnd(CutToBytes(stem, room))).append(number).append(extension);
}

}  // namespace

std::string SafeName(std::string_view text) {
  std::string name = Clean(text);
  const auto isRefused = [](char byte) {
    return std::string_view("/\\?:*\"<>|").find(byte) != std::string_view::npos;
  };
  std::replace_if(name.begin(), name.end(), isRefused, '_');
  name.erase(0, std::min(name.find_first_not_of(". "), name.size()));
  name.erase(name.find_last_not_of(' ') + 1);
  return name;
}

std::string SafeExtension(std::string_view path) {
  constexpr std::size_t kLongest = 10;
  const std::string_view extension = text::SplitExtension(path).extension;
  const bool isPlain = std::all_of(extension.begin(), extension.end(), [](char letter) {
    return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') ||
           (letter >= 'A' && letter <= 'Z');
  });
  if (extension.empty() || extension.size() > kLongest || !isPlain) return {};
  return std::string(1, '.').append(extension);
}

std::string_view CutToBytes(std::string_view clean, std::size_t bytes) {
  if (clean.size() <= bytes) return clean;
  std::size_t end = bytes;
  const auto continues = [clean](std::size_t at) {
    const std::string_view rest = clean.substr(at);
    return !BeginsCharacter(rest[0]) || Width(rest.substr(0, CharacterLength(rest))) == 0;
  };
  while (end > 0 && continues(end)) --end;
  return clean.substr(0, end);
}

bool FileNames::IsFree(const std::string& name) {
  ++tried_;
  return taken_.insert(FoldFileName(name)).second;
}

std::string FileNames::Take(std::string_view stem, std::string_view extension) {
  const std::string whole = WholeStem(stem);
  std::string name = WithNumber(whole, "", extension);
  if (IsFree(name)) return name;
  // 2 to 9, then 10 to 99, and so on.
  for (std::size_t first = 2, end = 10;; first = end, end *= 10) {
    const std::string sample = WithNumber(whole, " (" + std::to_string(first) + ")", extension);
    std::size_t& number = next_.try_emplace(FoldFileName(sample), first).first->second;
    while (number < end) {
      name = WithNumber(whole, " (" + std::to_string(number++) + ")", extension);
      if (IsFree(name)) return name;
    }
  }
}

}  // namespace tavrel::host
