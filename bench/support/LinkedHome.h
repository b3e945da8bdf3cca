// A home folder for the library to read, below the folder for temporary files.
#pragma once

#include <string>

namespace tavrel::bench {

// Its library file is a link to `file`; removed with the object.
class LinkedHome {
 public:
  explicit LinkedHome(const std::string& file);
  ~LinkedHome();
  LinkedHome(const LinkedHome&) = delete;
  LinkedHome& operator=(const LinkedHome&) = delete;

  const std::string& Path() const noexcept { return path; }

 private:
  std::string path;
};

}  // namespace tavrel::bench
