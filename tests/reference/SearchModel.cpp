#include "tests/reference/SearchModel.h"

#include <stdlib.h>
#include <utf8proc.h>

#include <map>

namespace tavrel::test {
namespace {

using Points = std::vector<std::int32_t>;

int CombiningClass(std::int32_t point) {
  return utf8proc_get_property(point)->combining_class;
}

Points Parts(std::int32_t point, int options) {
  std::int32_t parts[16];
  int unused = 0;
  const auto count = utf8proc_decompose_char(
      point, parts, 16, static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | options), &unused);
  return {parts, parts + count};
}

std::optional<Points> Decode(std::string_view text) {
  Points points;
  while (!text.empty()) {
    std::int32_t point = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                         static_cast<utf8proc_ssize_t>(text.size()), &point);
    if (length < 0) return std::nullopt;
    points.push_back(point);
    text.remove_prefix(static_cast<std::size_t>(length));
  }
  return points;
}

// All characters that decompose to more than one code point of combining class 0, Hangul syllables
// among them, by the first of them.
const std::multimap<std::int32_t, Points>& CharactersOfSeveral() {
  static const auto* characters = [] {
    auto* found = new std::multimap<std::int32_t, Points>;
    for (std::int32_t point = 0; point < 0x110000; ++point) {
      if (point >= 0xD800 && point < 0xE000) continue;
      const Points parts = Parts(point, 0);
      int starters = 0;
      for (const std::int32_t part : parts) starters += CombiningClass(part) == 0 ? 1 : 0;
      if (starters > 1) found->emplace(parts.front(), parts);
    }
    return found;
  }();
  return *characters;
}

// Neighbours out of order change places until there are none.
void Order(Points& points) {
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t i = 1; i < points.size(); ++i) {
      const int left = CombiningClass(points[i - 1]);
      const int right = CombiningClass(points[i]);
      if (right == 0 || left <= right) continue;
      std::swap(points[i - 1], points[i]);
      changed = true;
    }
  }
}

std::vector<bool> BeginsOfCharacters(const Points& decomposed) {
  std::vector<bool> begins(decomposed.size(), true);
  for (std::size_t i = 0; i < decomposed.size(); ++i) {
    if (i > 0 && CombiningClass(decomposed[i]) != 0) begins[i] = false;
    const auto [first, last] = CharactersOfSeveral().equal_range(decomposed[i]);
    for (auto character = first; character != last; ++character) {
      const Points& parts = character->second;
      if (decomposed.size() - i < parts.size()) continue;
      if (!std::equal(parts.begin(), parts.end(),
                      decomposed.begin() + static_cast<std::ptrdiff_t>(i))) {
        continue;
      }
      for (std::size_t part = 1; part < parts.size(); ++part) begins[i + part] = false;
    }
  }
  return begins;
}

std::string Normal(std::string_view text, int options) {
  utf8proc_uint8_t* result = nullptr;
  const auto size = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                 static_cast<utf8proc_ssize_t>(text.size()), &result,
                                 static_cast<utf8proc_option_t>(UTF8PROC_STABLE | options));
  std::string normal(reinterpret_cast<char*>(result), static_cast<std::size_t>(size));
  free(result);
  return normal;
}

}  // namespace

std::optional<ModelText> FoldByModel(std::string_view text) {
  const std::optional<Points> points = Decode(text);
  if (!points) return std::nullopt;
  Points decomposed;
  for (const std::int32_t point : *points) {
    for (const std::int32_t part : Parts(point, 0)) decomposed.push_back(part);
  }
  Order(decomposed);
  const std::vector<bool> begins = BeginsOfCharacters(decomposed);
  ModelText folded;
  for (std::size_t i = 0; i < decomposed.size(); ++i) {
    bool isFirst = true;
    for (const std::int32_t part : Parts(decomposed[i], UTF8PROC_CASEFOLD)) {
      folded.points.push_back(part);
      folded.begins.push_back(isFirst && begins[i]);
      isFirst = false;
    }
  }
  return folded;
}

bool ContainsByModel(std::string_view text, std::string_view term) {
  const std::optional<ModelText> wanted = FoldByModel(term);
  const std::optional<ModelText> whole = FoldByModel(text);
  if (!wanted || !whole || wanted->points.empty()) return false;
  const std::size_t size = wanted->points.size();
  for (std::size_t at = 0; at + size <= whole->points.size(); ++at) {
    const std::size_t end = at + size;
    if (!whole->begins[at] || (end < whole->begins.size() && !whole->begins[end])) continue;
    const auto from = whole->points.begin() + static_cast<std::ptrdiff_t>(at);
    if (std::equal(wanted->points.begin(), wanted->points.end(), from)) return true;
  }
  return false;
}

std::string Composed(std::string_view text) {
  return Normal(text, UTF8PROC_COMPOSE);
}

std::string Decomposed(std::string_view text) {
  return Normal(text, UTF8PROC_DECOMPOSE);
}

std::string Utf8(std::int32_t point) {
  utf8proc_uint8_t bytes[4];
  const auto size = utf8proc_encode_char(point, bytes);
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

}  // namespace tavrel::test
