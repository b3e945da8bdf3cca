// A home folder for the library to read, below the folder for temporary files.
#pragma once

#include <string>

namespace tavrel::bench {

// Its library file is a link to `file`; removed with the object.
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

}  // namespace tavrel::bench
