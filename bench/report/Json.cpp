#include "bench/report/Json.h"

#include <cmath>
#include <stdexcept>

namespace tavrel::bench {

JsonOwner ParseJson(const std::string& text) {
  json_error_t error;
  JsonOwner value(json_loadb(text.data(), text.size(), JSON_DECODE_ANY, &error));
  if (!value) throw std::invalid_argument(error.text);
  return value;
}

json_t* NewNumber(double number) {
  return std::isfinite(number) ? json_real(number) : json_null();
}

json_t* NewArray(const std::vector<double>& numbers) {
  json_t* const array = json_array();
  for (const double number : numbers) json_array_append_new(array, NewNumber(number));
  return array;
}

void WriteJson(const json_t* value, const std::string& file) {
  if (json_dump_file(value, file.c_str(), JSON_INDENT(1)) != 0) {
    throw std::runtime_error("cannot write \"" + file + "\"");
  }
}

}  // namespace tavrel::bench
