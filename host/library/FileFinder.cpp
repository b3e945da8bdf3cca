#include "host/library/FileFinder.h"

#include <array>

namespace tavrel::host {

std::string_view StatusName(FileStatus status) noexcept {
  constexpr std::array<std::string_view, kFileStatusCount> kNames{"found", "respelled", "missing",
                                                                  "none", "remote"};
  return kNames[static_cast<std::size_t>(status)];
}

}  // namespace tavrel::host
