// JSON for other programs: numbers as numbers, missing texts as null, fields in a fixed order.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "host/output/Output.h"

namespace tavrel::host {

using Json = nlohmann::ordered_json;

// A text of any content; null when there is none.
[[nodiscard]] Json JsonText(std::optional<std::string_view> text);

// On one line, and always valid UTF-8: bytes that are not become U+FFFD. Control characters are
// escaped, also those that JSON would let stand (DEL and C1), so that the text is harmless on a
// terminal.
[[nodiscard]] std::string JsonLine(const Json& value);

// Prints an array, one element a line, without holding more than one of them.
class JsonList {
 public:
  explicit JsonList(Output& output) : output_(output) { output_.Write("["); }
  void Add(const Json& element);
  void End();

 private:
  Output& output_;
  bool isEmpty_ = true;
};

}  // namespace tavrel::host
