// What the user may say in front of, or behind, every command.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/output/Terminal.h"

namespace tavrel::host {

// What the library is called that comes from there.
inline constexpr const char* kStandardInput = "standard input";

// In which form the paths of songs are told.
enum class PathForm {
  Auto,      // that of the file that is there
  Composed,  // this and the others look at no disk
  Decomposed,
  AsWritten,
};

// Where the files of songs are.
struct PathOptions {
  std::vector<std::string> maps;     // OLD=NEW: a folder as the library has it, and where it is now
  std::optional<std::string> music;  // a folder that holds them
  PathForm form = PathForm::Auto;
};

struct Options {
  std::optional<std::string> home;     // a folder that holds Music/iTunes
  std::optional<std::string> library;  // a library file under any name, a folder, or "-"
  bool isLibraryOfEnvironment = false;
  bool json = false;
  bool quiet = false;    // no notes, no progress
  bool verbose = false;  // what the library logs, too
  bool noPager = false;
  ColorUse color = ColorUse::Auto;
  PathOptions paths;
};

}  // namespace tavrel::host
