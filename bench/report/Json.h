// JSON values with an owner, of the library that reads and writes them.
#pragma once

#include <jansson.h>

#include <memory>
#include <string>
#include <vector>

namespace tavrel::bench {

struct JsonRelease {
  void operator()(json_t* value) const noexcept { json_decref(value); }
};
using JsonOwner = std::unique_ptr<json_t, JsonRelease>;

// Throws std::invalid_argument when `text` is not one JSON value.
[[nodiscard]] JsonOwner ParseJson(const std::string& text);

// A new value, which belongs to the caller: null for what JSON has no number for.
[[nodiscard]] json_t* NewNumber(double number);
[[nodiscard]] json_t* NewArray(const std::vector<double>& numbers);

// Throws std::runtime_error when the file cannot be written.
void WriteJson(const json_t* value, const std::string& file);

}  // namespace tavrel::bench
