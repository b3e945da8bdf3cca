// Rows of cells, on their way to where they are shown.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "host/output/TextRange.h"

namespace tavrel::host {

// Finds what is to catch the eye in a clean text; none when nothing is.
using FindMark = std::function<std::optional<TextRange>(std::string_view clean)>;

// Takes cells, row by row from left to right. Texts may hold anything and are borrowed for the call.
class Rows {
 public:
  virtual ~Rows() = default;

  virtual void Add(std::string_view text) = 0;
  void Add(std::int64_t number);
  // find: asked only where marks can be shown. Only where a text is cut at its end.
  virtual void AddMarked(std::string_view text, const FindMark& find) {
    (void)find;
    Add(text);
  }
};

// Gives all rows of a list. It may be called any number of times and gives the same each time: a table is
// measured before it is printed, and holds no more than a row at a time.
using GiveRows = std::function<void(Rows&)>;

}  // namespace tavrel::host
