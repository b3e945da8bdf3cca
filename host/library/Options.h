// What the user may say in front of, or behind, every command.
#pragma once

#include <optional>
#include <string>

namespace tavrel::host {

struct Options {
  std::optional<std::string> home;     // a folder that holds Music/iTunes
  std::optional<std::string> library;  // a library file under any name
  bool json = false;
};

}  // namespace tavrel::host
