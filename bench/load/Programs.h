// The programs that load_library measures. Each is called in a process of its own, reads the file,
// counts its songs (outside the measured times) and gives everything back. Failures are exceptions.
#pragma once

#include <string>

#include "bench/ChildRun.h"

namespace tavrel::bench {

// A home folder of our own whose library file is a link to `file`; removed at the end.
class TemporaryHome {
 public:
  explicit TemporaryHome(const std::string& file);
  ~TemporaryHome();
  TemporaryHome(const TemporaryHome&) = delete;
  TemporaryHome& operator=(const TemporaryHome&) = delete;

  const std::string& Path() const noexcept { return path; }

 private:
  std::string path;
};

// Loads and unloads the shared library `library` with `home` as the home folder. The load is the
// whole one: reading, parsing and all tables.
LoadTimes LoadWithTavrel(const std::string& library, const std::string& home);

// Whether pugixml was there when this was built.
bool HasPugixml() noexcept;

// Parses `file` in place with pugixml's cheapest settings, and makes no tables.
LoadTimes LoadWithPugixml(const std::string& file);

}  // namespace tavrel::bench
