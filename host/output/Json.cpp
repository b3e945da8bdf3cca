#include "host/output/Json.h"

#include <fmt/format.h>

namespace tavrel::host {

Json JsonText(std::optional<std::string_view> text) {
  return text ? Json(std::string(*text)) : Json(nullptr);
}

std::string JsonLine(const Json& value) {
  const std::string plain = value.dump(-1, ' ', false, Json::error_handler_t::replace);
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

void JsonList::Add(const Json& element) {
  output_.Write(isEmpty_ ? "\n  " : ",\n  ");
  output_.Write(JsonLine(element));
  isEmpty_ = false;
}

void JsonList::End() {
  output_.Write(isEmpty_ ? "]\n" : "\n]\n");
}

}  // namespace tavrel::host
