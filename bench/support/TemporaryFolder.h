// A folder below the one for temporary files, removed with the object and all that is in it.
#pragma once

#include <string>

namespace tavrel::bench {

class TemporaryFolder {
 public:
  // Throws std::system_error.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
};

}  // namespace tavrel::bench
