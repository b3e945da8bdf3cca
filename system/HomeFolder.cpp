#include "system/HomeFolder.h"

#include <pwd.h>
#include <unistd.h>

#include "system/Environment.h"

namespace tavrel::system {

std::optional<std::string> HomeFolder() {
  const char* home = TrustedVariable("HOME");
  if (home != nullptr && home[0] == '/') return home;

  passwd entry;
  passwd* found = nullptr;
  char texts[16384];
  if (getpwuid_r(getuid(), &entry, texts, sizeof texts, &found) != 0 || found == nullptr ||
      found->pw_dir == nullptr || found->pw_dir[0] != '/') {
    return std::nullopt;
  }
  return found->pw_dir;
}

}  // namespace tavrel::system
