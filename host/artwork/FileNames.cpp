#include "host/artwork/FileNames.h"

#include <algorithm>

#include "host/output/Text.h"

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

}  // namespace

std::string SafeName(std::string_view text) {
  std::string name = Clean(text);
  std::replace(name.begin(), name.end(), '/', '_');
  name.erase(0, std::min(name.find_first_not_of(". "), name.size()));
  name.erase(name.find_last_not_of(' ') + 1);
  return name;
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

std::string FileNames::Take(std::string_view stem, std::string_view extension) {
  for (std::size_t number = 1;; ++number) {
    const std::string count = number == 1 ? "" : " (" + std::to_string(number) + ")";
    std::string name(CutToBytes(stem, kLongestFileName - count.size() - extension.size()));
    name.append(count).append(extension);
    if (taken_.insert(Fold(name)).second) return name;
  }
}

}  // namespace tavrel::host
