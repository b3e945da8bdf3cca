// Writes a property list line by line in the layout that iTunes gives its library file: one key and
// its value to a line, tabs for the depth, the top dictionary at the margin, escapes as decimal
// references.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bench/generator/OutputFile.h"

namespace tavrel::bench {

class PlistWriter {
 public:
  // `file` must outlive the writer; Finish gives it the last of the text.
  explicit PlistWriter(OutputFile& file);

  // A dictionary or an array ("dict", "array"); what follows is one deeper, up to End.
  void Begin(std::string_view element);
  void End(std::string_view element);

  // A key on a line of its own: its value is the next Begin, or lines of data.
  void Key(std::string_view key);

  void String(std::string_view key, std::string_view value);
  void Integer(std::string_view key, std::uint64_t value);
  void Boolean(std::string_view key, bool value);
  // `seconds`: since 1970, UTC.
  void Date(std::string_view key, std::uint64_t seconds);
  // 16 hexadecimal digits.
  void PersistentId(std::string_view key, std::uint64_t value);
  // `base64`: broken into lines of the length that iTunes uses.
  void Data(std::string_view key, std::string_view base64);

  void Finish();

 private:
  void Indent();
  void Open(std::string_view key);
  void AppendNumber(std::uint64_t value);
  void AppendPadded(std::uint64_t value, std::size_t digits);
  void AppendEscaped(std::string_view text);
  void EndLine();

  OutputFile& output;
  std::string buffer;
  std::size_t depth = 0;
};

}  // namespace tavrel::bench
