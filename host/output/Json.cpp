#include "host/output/Json.h"

#include <fmt/format.h>

#include <cstdint>
#include <nlohmann/json.hpp>

#include "host/output/PlainAscii.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

std::string JsonQuoted(std::string_view text) {
  using Library = nlohmann::json;
  return Library(text).dump(-1, ' ', false, Library::error_handler_t::replace);
}

void AppendEscaped(std::string& escaped, std::int32_t code) {
  if (code < 0x10000) {
    escaped += fmt::format("\\u{:04x}", code);
    return;
  }
  const std::int32_t rest = code - 0x10000;  // two halves of ten bits each
  escaped += fmt::format("\\u{:04x}\\u{:04x}", 0xD800 + (rest >> 10), 0xDC00 + (rest & 0x3FF));
}

// Escapes what JSON lets stand but nobody sees: DEL, C1, what orders or tags text, and line ends.
std::string WithoutUnseen(const std::string& plain) {
  constexpr std::int32_t kLineSeparator = 0x2028;
  constexpr std::int32_t kParagraphSeparator = 0x2029;
  std::string escaped;
  escaped.reserve(plain.size());
  for (std::string_view text = plain; !text.empty();) {
    const Character first = FirstCharacter(text);
    const bool isLineEnd = first.code == kLineSeparator || first.code == kParagraphSeparator;
    if (isLineEnd || (first.code >= 0 && IsUnseen(first.code))) {
      AppendEscaped(escaped, first.code);
    } else {
      escaped += text.substr(0, first.length);
    }
    text.remove_prefix(first.length);
  }
  return escaped;
}

void AppendWithComma(std::string& list, std::string_view name, const std::string& value) {
  if (!list.empty()) list += ',';
  if (!name.empty()) list.append(1, '"').append(name).append("\":");
  list += value;
}

}  // namespace

JsonValue::JsonValue(std::string_view text) {
  AppendJsonText(text_, text);
}

void AppendJsonText(std::string& json, std::string_view text) {
  if (IsPlainAsciiWithout<'"', '\\'>(text)) {
    json.append(1, '"').append(text).append(1, '"');
  } else {
    json += WithoutUnseen(JsonQuoted(text));
  }
}

JsonValue::JsonValue(const JsonArray& array) : text_(array.Text()) {}

JsonValue::JsonValue(const JsonObject& object) : text_(object.Text()) {}

void JsonArray::Add(const JsonValue& element) {
  AppendWithComma(elements_, {}, element.Text());
}

JsonObject::JsonObject(std::initializer_list<Field> fields) {
  for (const Field& field : fields) Add(field);
}

void JsonObject::Add(const Field& field) {
  AppendWithComma(fields_, field.name, field.value.Text());
}

void JsonList::AddText(std::string_view json) {
  output_.Write(isEmpty_ ? "\n  " : ",\n  ");
  output_.Write(json);
  isEmpty_ = false;
}

void JsonList::End() {
  output_.Write(isEmpty_ ? "]\n" : "\n]\n");
}

}  // namespace tavrel::host
