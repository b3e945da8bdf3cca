// File names that any file system takes, out of texts that may hold anything.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/library/TextHash.h"

namespace tavrel::host {

inline constexpr std::size_t kLongestFileName = 255;  // in bytes, on the usual file systems

inline constexpr const char* kUntitled = "Untitled";

// The text as a part of a file name that any file system takes: without control characters, with '_'
// for each of / \ ? : * " < > |, with neither dots nor blanks at its start nor blanks at its end.
// Empty when nothing is left.
[[nodiscard]] std::string SafeName(std::string_view text);

// The longest prefix of a clean text of at most `bytes` bytes; no character is cut, and combining
// marks stay with their base.
[[nodiscard]] std::string_view CutToBytes(std::string_view clean, std::size_t bytes);

// The extension of a file's path, with its dot and in the same case: ".mp3". Empty when there is none, or when
// what stands behind the last dot is no extension: anything but one to ten ASCII letters and digits.
[[nodiscard]] std::string SafeExtension(std::string_view path);

// Gives each file of a folder a name of its own, which any file system takes.
class FileNames {
 public:
  // "STEM.png", or "STEM (2).png" and so on when that name has been given; names that differ only in
  // case, in how accents are composed or in characters without a shape are the same. `stem` is made
  // of safe parts; a long one is cut, dots and blanks at its end go, one that is empty is "Untitled",
  // and one that stands for a device on some systems ("con") gets a '_' before it. extension: of a few
  // letters, or empty, as for a folder.
  // Cost: linear in the stem's length, all calls together, however many stems are equal.
  [[nodiscard]] std::string Take(std::string_view stem, std::string_view extension);

  // How many names were tried so far: what it has cost.
  [[nodiscard]] std::size_t Tried() const noexcept { return tried_; }

 private:
  [[nodiscard]] bool IsFree(const std::string& name);

  TextSet taken_;  // as they compare
  // The next number for a name that is taken, by the folded rest of the name. How much of a long stem
  // is left depends on the number of its digits, so each such number counts for itself.
  TextMap<std::size_t> next_;
  std::size_t tried_ = 0;
};

}  // namespace tavrel::host
