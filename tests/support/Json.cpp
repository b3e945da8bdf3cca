#include "tests/support/Json.h"

#include <jansson.h>

#include <cstdlib>
#include <ostream>
#include <stdexcept>

namespace tavrel::test {
namespace {

std::string Dumped(const json_t* value) {
  const std::unique_ptr<char, decltype(&std::free)> text(
      json_dumps(value, JSON_ENCODE_ANY | JSON_COMPACT), &std::free);
  return text.get();
}

}  // namespace

struct Json::Node {
  std::shared_ptr<json_t> document;
  json_t* value;

  [[nodiscard]] Json Within(json_t* inner) const {
    return Json(std::make_shared<const Node>(Node{document, inner}));
  }
};

Json Json::Parse(std::string_view text) {
  json_error_t error;
  const std::shared_ptr<json_t> document(
      json_loadb(text.data(), text.size(),
                 JSON_DECODE_ANY | JSON_REJECT_DUPLICATES | JSON_ALLOW_NUL, &error),
      &json_decref);
  if (!document) throw std::invalid_argument(std::string("no JSON: ") + error.text);
  return Json(std::make_shared<const Node>(Node{document, document.get()}));
}

Json Json::operator[](const char* name) const {
  json_t* const value = json_object_get(node_->value, name);
  if (!value)
    throw std::out_of_range("no \"" + std::string(name) + "\" in " + Dumped(node_->value));
  return node_->Within(value);
}

Json Json::At(std::size_t position) const {
  json_t* const value = json_array_get(node_->value, position);
  if (!value) throw std::out_of_range("not so many in " + Dumped(node_->value));
  return node_->Within(value);
}

bool Json::Has(const char* name) const {
  return json_object_get(node_->value, name) != nullptr;
}

std::size_t Json::size() const {
  return json_is_object(node_->value) ? json_object_size(node_->value)
                                      : json_array_size(node_->value);
}

std::vector<Json> Json::Values() const {
  std::vector<Json> values;
  for (std::size_t i = 0; i < json_array_size(node_->value); ++i) values.push_back(At(i));
  void* item = json_object_iter(node_->value);
  for (; item; item = json_object_iter_next(node_->value, item)) {
    values.push_back(node_->Within(json_object_iter_value(item)));
  }
  return values;
}

std::vector<std::string> Json::Names() const {
  std::vector<std::string> names;
  void* item = json_object_iter(node_->value);
  for (; item; item = json_object_iter_next(node_->value, item)) {
    names.emplace_back(json_object_iter_key(item));
  }
  return names;
}

bool Json::IsNull() const {
  return json_is_null(node_->value);
}

bool Json::IsText() const {
  return json_is_string(node_->value);
}

bool Json::IsWhole() const {
  return json_is_integer(node_->value);
}

bool Json::IsNumber() const {
  return json_is_number(node_->value);
}

std::string Json::Text() const {
  if (!IsText()) throw std::domain_error("not a text: " + Dumped(node_->value));
  return {json_string_value(node_->value), json_string_length(node_->value)};
}

double Json::Number() const {
  if (!IsNumber()) throw std::domain_error("not a number: " + Dumped(node_->value));
  return json_number_value(node_->value);
}

bool operator==(const Json& left, const Json& right) {
  return json_equal(left.node_->value, right.node_->value) != 0;
}

std::ostream& operator<<(std::ostream& stream, const Json& value) {
  return stream << Dumped(value.node_->value);
}

}  // namespace tavrel::test
