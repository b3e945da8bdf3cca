// What a shared object's dynamic section says about the work that it makes for the loader.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tavrel::bench {

struct SharedObject {
  std::size_t relocations = 0;      // to be done at load, those of function calls included
  std::size_t constructors = 0;     // in its array of them
  std::vector<std::string> needed;  // the libraries that it names, sorted
};

// Throws std::runtime_error when the file is not a shared object of this machine's kind.
[[nodiscard]] SharedObject ReadSharedObject(const std::string& path);

}  // namespace tavrel::bench
