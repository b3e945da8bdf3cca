#include "bench/report/JsonComparison.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tavrel::bench {
namespace {

using ComparedJson = nlohmann::ordered_json;

bool Holds(const ComparedJson& whole, const ComparedJson& part) {
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

bool JsonHolds(const std::string& whole, const std::string& part) {
  return Holds(ComparedJson::parse(whole), ComparedJson::parse(part));
}

}  // namespace tavrel::bench
