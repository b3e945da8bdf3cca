// Library files, loaded to be searched.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "bench/search/SearchPeers.h"
#include "bench/support/LinkedHome.h"
#include "library/State.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {

// The processor time that this process has used, and its children that have ended.
[[nodiscard]] double ProcessorSeconds();

// The library keeps one file at a time, but several stay in memory when Select() exchanges them.
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

// Search terms that borrow their texts.
[[nodiscard]] SongInfo Terms(const std::string& name, const std::string& artist,
                             const std::string& album);
[[nodiscard]] inline SongInfo Terms(const std::string& any) {
  return Terms(any, any, any);
}

// These work on the selected library.

// The number of matches. Throws std::runtime_error when the callback hears anything else than that
// of a plain search: figures of such a search are worth nothing.
[[nodiscard]] std::int32_t CheckedCount(const SongInfo& terms);

[[nodiscard]] double SecondsOfSearch(const SongInfo& terms);
[[nodiscard]] double SecondsOfPlainSearch(const SongInfo& terms);

[[nodiscard]] TrackTexts ReadTexts();

}  // namespace tavrel::bench
