#include "tests/support/Json.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace tavrel::test {

using Value = nlohmann::ordered_json;

struct Json::Node {
  std::shared_ptr<const Value> document;
  const Value* value;

  [[nodiscard]] Json Within(const Value& inner) const {
    return Json(std::make_shared<const Node>(Node{document, &inner}));
  }
};

Json Json::Parse(std::string_view text) {
  const auto document = std::make_shared<const Value>(Value::parse(text));
  return Json(std::make_shared<const Node>(Node{document, document.get()}));
}

Json Json::operator[](const char* name) const {
  return node_->Within(node_->value->at(name));
}

Json Json::At(std::size_t position) const {
  return node_->Within(node_->value->at(position));
}

bool Json::Has(const char* name) const {
  return node_->value->contains(name);
}

std::size_t Json::size() const {
  return node_->value->is_structured() ? node_->value->size() : 0;
}

std::vector<Json> Json::Values() const {
  std::vector<Json> values;
  for (const Value& inner : *node_->value) values.push_back(node_->Within(inner));
  return values;
}

std::vector<std::string> Json::Names() const {
  std::vector<std::string> names;
  for (const auto& [name, value] : node_->value->items()) names.push_back(name);
  return names;
}

bool Json::IsNull() const {
  return node_->value->is_null();
}

bool Json::IsText() const {
  return node_->value->is_string();
}

bool Json::IsWhole() const {
  return node_->value->is_number_integer();
}

bool Json::IsNumber() const {
  return node_->value->is_number();
}

std::string Json::Text() const {
  return node_->value->get<std::string>();
}

double Json::Number() const {
  if (!IsNumber()) throw std::domain_error("not a number: " + node_->value->dump());
  return node_->value->get<double>();
}

bool operator==(const Json& left, const Json& right) {
  // Compared as objects that do not keep the order of their names.
  return nlohmann::json(*left.node_->value) == nlohmann::json(*right.node_->value);
}

std::ostream& operator<<(std::ostream& stream, const Json& value) {
  return stream << value.node_->value->dump();
}

}  // namespace tavrel::test
