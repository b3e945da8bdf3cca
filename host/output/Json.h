// JSON for other programs: numbers as numbers, missing texts as null, fields in the order in which
// they are named.
#pragma once

#include <concepts>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/output/Sink.h"

namespace tavrel::host {

class JsonArray;
class JsonObject;

// A value, written out on one line of valid UTF-8. Texts may hold anything: bytes that are not UTF-8
// become U+FFFD, and what nobody sees is escaped, also what JSON would let stand (DEL, C1, what orders or
// tags text), so that the text is harmless on a terminal.
class JsonValue {
 public:
  JsonValue(std::string_view text);
  JsonValue(const char* text) : JsonValue(std::string_view(text)) {}
  JsonValue(const std::string& text) : JsonValue(std::string_view(text)) {}
  template <typename Text>  // null when there is none
  JsonValue(const std::optional<Text>& text)
      : text_(text ? JsonValue(std::string_view(*text)).text_ : "null") {}
  JsonValue(std::integral auto number) : text_(std::to_string(number)) {}
  JsonValue(bool truth) : text_(truth ? "true" : "false") {}
  JsonValue(const JsonArray& array);
  JsonValue(const JsonObject& object);

  [[nodiscard]] const std::string& Text() const noexcept { return text_; }

 private:
  std::string text_;
};

// The same for a text alone, behind what `json` holds.
void AppendJsonText(std::string& json, std::string_view text);

inline constexpr std::optional<std::string_view> kJsonNull = std::nullopt;

class JsonArray {
 public:
  void Add(const JsonValue& element);
  [[nodiscard]] std::string Text() const { return "[" + elements_ + "]"; }

 private:
  std::string elements_;
};

class JsonObject {
 public:
  struct Field {
    std::string_view name;  // plain ASCII, without quotes or backslashes
    JsonValue value;
  };

  JsonObject(std::initializer_list<Field> fields);
  void Add(const Field& field);
  [[nodiscard]] std::string Text() const { return "{" + fields_ + "}"; }

 private:
  std::string fields_;
};

// Prints an array, one element a line, without holding more than one of them.
class JsonList {
 public:
  explicit JsonList(Sink& output) : output_(output) { output_.Write("["); }
  void Add(const JsonValue& element) { AddText(element.Text()); }
  void AddText(std::string_view json);  // a value that is written out already
  void End();

 private:
  Sink& output_;
  bool isEmpty_ = true;
};

}  // namespace tavrel::host
