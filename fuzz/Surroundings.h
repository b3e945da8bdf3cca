// Where arbitrary calls are made: a home whose library file is now and then another, and runners for scripts.
#pragma once

#include <cstddef>
#include <string>

#include "fuzz/InputFile.h"

namespace tavrel::fuzz {

// Homes for the library file, and folders with a runner that succeeds, one that fails, and none.
class Surroundings {
 public:
  Surroundings();

  // Loads one of eight files: mostly a small library, now and then one that is none.
  void Load(std::size_t which) const;
  // Imports a ringtone, or null, with one of three runners.
  void Import(std::size_t which, const char* path) const;

 private:
  InputHome home_;
  std::string small_;
};

}  // namespace tavrel::fuzz
