#include "bench/report/JsonComparison.h"

#include "bench/report/Json.h"

namespace tavrel::bench {
namespace {

bool Holds(const json_t* whole, const json_t* part);

bool HoldsMembers(const json_t* whole, json_t* part) {
  void* member = json_object_iter(part);
  for (; member; member = json_object_iter_next(part, member)) {
    const json_t* const value = json_object_get(whole, json_object_iter_key(member));
    if (!value || !Holds(value, json_object_iter_value(member))) return false;
  }
  return json_is_object(whole);
}

bool HoldsElements(const json_t* whole, const json_t* part) {
  const std::size_t count = json_array_size(part);
  if (!json_is_array(whole) || json_array_size(whole) != count) return false;
  for (std::size_t i = 0; i < count; ++i) {
    if (!Holds(json_array_get(whole, i), json_array_get(part, i))) return false;
  }
  return true;
}

bool Holds(const json_t* whole, const json_t* part) {
  // The library walks through an object that it may change, and does not.
  if (json_is_object(part)) return HoldsMembers(whole, const_cast<json_t*>(part));
  if (json_is_array(part)) return HoldsElements(whole, part);
  return json_equal(whole, part) != 0;
}

}  // namespace

bool JsonHolds(const std::string& whole, const std::string& part) {
  return Holds(ParseJson(whole).get(), ParseJson(part).get());
}

}  // namespace tavrel::bench
