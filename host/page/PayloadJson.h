// How the JSON text of the payload names texts and columns of numbers.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/output/Json.h"
#include "host/page/Columns.h"

namespace tavrel::host {

// textAt(number): one of so many texts, by numbers from 0.
template <typename TextAt>
void AppendTexts(std::string& json, std::string_view name, std::size_t count, TextAt textAt) {
  json.append(",\"").append(name).append("\":[");
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) json += ',';
    AppendJsonText(json, textAt(i));
  }
  json += ']';
}

// What is to be known of a column of numbers, whose bytes stand behind the JSON text.
inline void AppendNumbers(std::string& json, const PackedNumbers& packed) {
  json.append(",\"bytes\":").append(std::to_string(packed.bytes.size()));
  json.append(",\"differences\":").append(packed.areDifferences ? "true" : "false");
}

}  // namespace tavrel::host
