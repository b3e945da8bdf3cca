#include "host/output/Json.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

namespace tavrel::host {
namespace {

std::string Quoted(std::string_view text) {
  using Library = nlohmann::json;
  return Library(text).dump(-1, ' ', false, Library::error_handler_t::replace);
}

// Escapes DEL and C1.
std::string WithoutControls(const std::string& plain) {
  std::string escaped;
  escaped.reserve(plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    const auto byte = static_cast<unsigned char>(plain[i]);
    const auto next = static_cast<unsigned char>(i + 1 < plain.size() ? plain[i + 1] : '\0');
    if (byte == 0x7F) {
      escaped += "\\u007f";
    } else if (byte == 0xC2 && next >= 0x80 && next <= 0x9F) {
      escaped += fmt::format("\\u{:04x}", next);  // U+0080 to U+009F: the second byte is the number
      ++i;
    } else {
      escaped += plain[i];
    }
  }
  return escaped;
}

void AppendWithComma(std::string& list, std::string_view name, const std::string& value) {
  if (!list.empty()) list += ',';
  if (!name.empty()) list.append(1, '"').append(name).append("\":");
  list += value;
}

}  // namespace

JsonValue::JsonValue(std::string_view text) : text_(WithoutControls(Quoted(text))) {}

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

void JsonList::Add(const JsonValue& element) {
  output_.Write(isEmpty_ ? "\n  " : ",\n  ");
  output_.Write(element.Text());
  isEmpty_ = false;
}

void JsonList::End() {
  output_.Write(isEmpty_ ? "]\n" : "\n]\n");
}

}  // namespace tavrel::host
