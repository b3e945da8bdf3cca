#include "bench/support/LinkedHome.h"

#include <filesystem>

namespace tavrel::bench {

LinkedHome::LinkedHome(const std::string& file) {
  namespace fs = std::filesystem;
  const fs::path library = fs::path(path()) / "Music" / "iTunes";
  fs::create_directories(library);
  fs::create_symlink(fs::canonical(file), library / "iTunes Music Library.xml");
}

}  // namespace tavrel::bench
