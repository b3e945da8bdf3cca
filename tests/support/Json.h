// A JSON text as tests look at it, read by an independent library.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tavrel::test {

// A value within a document, which it keeps alive. What is asked of a value of another type, and a name
// or position that is not there, throws std::exception, which fails the test.
class Json {
 public:
  // Throws when `text` is not one JSON value, whole and valid.
  [[nodiscard]] static Json Parse(std::string_view text);

  [[nodiscard]] Json operator[](const char* name) const;
  [[nodiscard]] Json operator[](std::integral auto position) const {
    return At(static_cast<std::size_t>(position));
  }
  [[nodiscard]] bool Has(const char* name) const;

  // Of an array or an object; 0 for anything else.
  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] std::vector<Json> Values() const;
  // An object's, in their order.
  [[nodiscard]] std::vector<std::string> Names() const;

  [[nodiscard]] bool IsNull() const;
  [[nodiscard]] bool IsText() const;
  // A number without a point.
  [[nodiscard]] bool IsWhole() const;
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] double Number() const;

  // An array or an object is equal to another with the same values, an object's in any order.
  friend bool operator==(const Json& left, const Json& right);
  friend bool operator==(const Json& value, std::string_view text) {
    return value.IsText() && value.Text() == text;
  }
  friend bool operator==(const Json& value, std::same_as<bool> auto truth) {
    return value == Parse(truth ? "true" : "false");
  }
  template <class Arithmetic>
  requires(std::is_arithmetic_v<Arithmetic> && !std::same_as<Arithmetic, bool>) friend bool
  operator==(const Json& value, Arithmetic number) {
    return value.IsNumber() && value.Number() == static_cast<double>(number);
  }
  friend std::ostream& operator<<(std::ostream& stream, const Json& value);

 private:
  struct Node;

  explicit Json(std::shared_ptr<const Node> node) : node_(std::move(node)) {}
  [[nodiscard]] bool IsNumber() const;
  [[nodiscard]] Json At(std::size_t position) const;

  std::shared_ptr<const Node> node_;
};

}  // namespace tavrel::test
