#include "bench/support/LinkedHome.h"

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tavrel::bench {

LinkedHome::LinkedHome(const std::string& file) {
  namespace fs = std::filesystem;
  path = (fs::temp_directory_path() / "tavrel-home.XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "cannot make a temporary home folder");
  }
  const fs::path folder = fs::path(path) / "Music" / "iTunes";
  fs::create_directories(folder);
  fs::create_symlink(fs::canonical(file), folder / "iTunes Music Library.xml");
}

LinkedHome::~LinkedHome() {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

}  // namespace tavrel::bench
