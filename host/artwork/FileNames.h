// File names for covers, out of texts that may hold anything.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace tavrel::host {

inline constexpr std::size_t kLongestFileName = 255;  // in bytes, on the usual file systems

// The text as a part of a file name: without control characters, with '_' for every '/', with
// neither dots nor blanks at its start nor blanks at its end. Empty when nothing is left.
[[nodiscard]] std::string SafeName(std::string_view text);

// The longest prefix of a clean text of at most `bytes` bytes; no character is cut, and combining
// marks stay with their base.
[[nodiscard]] std::string_view CutToBytes(std::string_view clean, std::size_t bytes);

// Gives each file of a folder a name of its own.
class FileNames {
 public:
  // "STEM.png", or "STEM (2).png" and so on when that name has been given; names that differ only
  // in case or in how accents are composed are the same. `stem` is a safe name; a long one is cut.
  [[nodiscard]] std::string Take(std::string_view stem, std::string_view extension);

 private:
  std::unordered_set<std::string> taken_;
};

}  // namespace tavrel::host
