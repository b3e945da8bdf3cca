// The words of the page's interface.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace tavrel::host {

// A table of "key = text" lines; those that begin with '#' say something about it. Texts are HTML-safe: a
// test holds that none has a '<', '&' or '"'.
class Words {
 public:
  // The table is borrowed.
  explicit Words(std::string_view table);

  using Values = std::initializer_list<std::pair<std::string_view, std::string>>;

  // The text of a key, with "{name}" replaced by the value of that name. A key that is not there is told
  // itself, so that it is seen.
  [[nodiscard]] std::string Of(std::string_view key, Values values = {}) const;

  // The text of "key.one" or "key.other" with "{n}" replaced by the number.
  [[nodiscard]] std::string Count(std::string_view key, std::int64_t number) const;

  // All of them as a JSON object that may stand within HTML.
  [[nodiscard]] std::string Json() const;

 private:
  std::map<std::string_view, std::string_view> texts_;
};

}  // namespace tavrel::host
