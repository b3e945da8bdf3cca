#include "bench/support/TemporaryFolder.h"

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tavrel::bench {

TemporaryFolder::TemporaryFolder()
    : path_((std::filesystem::temp_directory_path() / "tavrel-bench-XXXXXX").string()) {
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "cannot make a temporary folder");
  }
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tavrel::bench
