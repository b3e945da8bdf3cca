// Library files, loaded in this process.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "agent/Exports.h"
#include "bench/support/LinkedHome.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {

// The library keeps one file at a time, but several stay in memory when Select() exchanges them. A program
// that uses it links all of the library's objects.
class LoadedLibrary {
 public:
  // Loads and selects `file`. Throws std::runtime_error when it cannot be used.
  explicit LoadedLibrary(const std::string& file);
  LoadedLibrary(LoadedLibrary&&) = default;
  LoadedLibrary& operator=(LoadedLibrary&&) = default;

  void Select() const noexcept { g_pGlobal = state_; }
  [[nodiscard]] std::int32_t trackCount() const noexcept { return state_->trackCount; }

 private:
  std::unique_ptr<LinkedHome> home_;
  GlobalState* state_;
};

}  // namespace tavrel::bench
