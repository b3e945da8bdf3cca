// What load_library measures. Each is called in a process of its own, reads a file,
// counts its tracks (outside the measured time) and gives everything back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/load/LoadMeter.h"

namespace tavrel::bench {

struct Loader {
  std::string name;
  std::string version;
  bool slow;  // takes long, and much memory, for large files
  // Failures are exceptions.
  std::function<LoadFigures(const std::string& file)> load;
};

// Loads and unloads the shared library. The load is the whole one: reading, parsing and all tables.
[[nodiscard]] Loader TavrelLoader(const std::string& library);

// The others only read and parse, each with its cheapest settings, and make no tables.
[[nodiscard]] Loader PugixmlLoader();
[[nodiscard]] Loader PugixmlHugeLoader();  // with huge pages behind its nodes and its buffer
[[nodiscard]] Loader RapidxmlLoader();
[[nodiscard]] Loader ExpatLoader();
[[nodiscard]] Loader LibxmlLoader();
[[nodiscard]] Loader LibplistLoader();
[[nodiscard]] Loader PlistlibLoader();
[[nodiscard]] bool HasPlistlib();

// The names that the targets are about.
inline constexpr char kTavrel[] = "libTavrel";
inline constexpr char kPugixml[] = "pugixml";
inline constexpr char kPugixmlHuge[] = "pugixml, huge pages";
inline constexpr char kLibxml[] = "libxml2";
inline constexpr char kLibplist[] = "libplist";
inline constexpr char kPlistlib[] = "Python plistlib";

// Those whose packages were there when this was built, and Python's when it is there now.
[[nodiscard]] std::vector<Loader> AllPeers();

}  // namespace tavrel::bench
