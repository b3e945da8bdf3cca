// What the user may say in front of, or behind, every command.
#pragma once

#include <optional>
#include <string>

#include "host/output/Terminal.h"

namespace tavrel::host {

// What the library is called that comes from there.
inline constexpr const char* kStandardInput = "standard input";

struct Options {
  std::optional<std::string> home;     // a folder that holds Music/iTunes
  std::optional<std::string> library;  // a library file under any name, a folder, or "-"
  bool isLibraryOfEnvironment = false;
  bool json = false;
  bool quiet = false;    // no notes, no progress
  bool verbose = false;  // what the library logs, too
  bool noPager = false;
  ColorUse color = ColorUse::Auto;
};

}  // namespace tavrel::host
