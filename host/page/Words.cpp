#include "host/page/Words.h"

#include <algorithm>

#include "host/output/Format.h"
#include "host/output/Json.h"

namespace tavrel::host {

Words::Words(std::string_view table) {
  constexpr std::string_view kIs = " = ";
  while (!table.empty()) {
    const std::string_view line = table.substr(0, table.find('\n'));
    table.remove_prefix(std::min(line.size() + 1, table.size()));
    const std::size_t is = line.find(kIs);
    if (line.starts_with('#') || is == std::string_view::npos) continue;
    texts_.emplace(line.substr(0, is), line.substr(is + kIs.size()));
  }
}

std::string Words::Of(std::string_view key, Values values) const {
  const auto known = texts_.find(key);
  if (known == texts_.end()) return std::string(key);
  std::string text(known->second);
  for (const auto& [name, value] : values) {
    std::string place(1, '{');
    place.append(name).append(1, '}');
    const std::size_t at = text.find(place);
    if (at != std::string::npos) text.replace(at, place.size(), value);
  }
  return text;
}

std::string Words::Count(std::string_view key, std::int64_t number) const {
  return Of(std::string(key).append(number == 1 ? ".one" : ".other"), {{"n", Grouped(number)}});
}

std::string Words::Json() const {
  std::string json = "{";
  for (const auto& [key, text] : texts_) {
    if (json.size() > 1) json += ",\n";
    AppendJsonText(json, key);
    json += ':';
    AppendJsonText(json, text);
  }
  return json + "}";
}

}  // namespace tavrel::host
