// A home folder for the library to read.
#pragma once

#include <string>

#include "bench/support/TemporaryFolder.h"

namespace tavrel::bench {

// Its library file is a link to `file`; removed with the object.
class LinkedHome {
 public:
  explicit LinkedHome(const std::string& file);

  [[nodiscard]] const std::string& path() const noexcept { return folder_.path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace tavrel::bench
