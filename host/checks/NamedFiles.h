// The files that songs name, each once.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "host/library/TextNumbers.h"

namespace tavrel::host {

// Numbers what the songs name: the path of a file that is here, else the location that it has in the library.
class NamedFiles {
 public:
  // Result: its number, as TextNumbers gives them.
  std::size_t Add(std::string_view name, bool isHere) {
    const std::size_t number = names_.Of(name).number;
    isHere_.resize(names_.Size());
    if (isHere) isHere_[number] = true;
    return number;
  }

  [[nodiscard]] std::size_t Size() const noexcept { return names_.Size(); }

  // Whether that is the path of one that is here.
  [[nodiscard]] bool Holds(std::string_view path) const {
    const auto number = names_.Find(path);
    return number && isHere_[*number];
  }

  // Calls visit(path) for each of those that are here.
  template <typename Visit>
  void ForEachHere(Visit visit) const {
    for (std::size_t number = 0; number < names_.Size(); ++number) {
      if (isHere_[number]) visit(names_.Text(number));
    }
  }

 private:
  TextNumbers names_;
  std::vector<bool> isHere_;
};

}  // namespace tavrel::host
