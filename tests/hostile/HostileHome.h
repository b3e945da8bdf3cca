// Loads library files that are damaged, odd or huge, and tells what became of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/LoadedLibrary.h"
#include "tests/support/TemporaryHome.h"

namespace tavrel::test {

struct Outcome {
  bool loaded = false;  // there is a document
  std::vector<std::string> log;
  std::vector<std::string> playlists;  // as Summaries() gives them
  std::vector<std::string> songs;      // the names of all songs, in the order of the file
};

class HostileHome {
 public:
  // Loads the text, asks everything a host can ask, and unloads.
  [[nodiscard]] Outcome Load(std::string_view text) const;
  // The same with the file as it stands.
  [[nodiscard]] Outcome LoadFile() const;

  [[nodiscard]] const TemporaryHome& home() const { return home_; }

 private:
  TemporaryHome home_;
};

}  // namespace tavrel::test
