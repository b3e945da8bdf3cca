#include "bench/host/Answers.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tavrel::bench {
namespace {

using Json = nlohmann::json;

std::size_t CountLines(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// Whether everything in `part` is in `whole`, which may have more members in its objects.
bool Holds(const Json& whole, const Json& part) {
  if (part.is_object()) {
    return whole.is_object() &&
           std::all_of(part.items().begin(), part.items().end(), [&](const auto& item) {
             return whole.contains(item.key()) && Holds(whole.at(item.key()), item.value());
           });
  }
  if (!part.is_array()) return whole == part;
  return whole.is_array() &&
         std::equal(whole.begin(), whole.end(), part.begin(), part.end(), Holds);
}

}  // namespace

void Compare(const std::string& task, const std::string& ours, const std::string& theirs) {
  bool isSame = false;
  if (task == "songs") {
    isSame = ours == theirs;
  } else if (task == "search") {
    isSame = CountLines(ours) == CountLines(theirs) + 2;  // a heading, and an end of the last line
  } else {
    isSame = Holds(Json::parse(ours), Json::parse(theirs));
  }
  if (!isSame) throw std::runtime_error("the peer has another answer for: " + task);
}

}  // namespace tavrel::bench
