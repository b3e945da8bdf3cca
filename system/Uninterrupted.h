// System calls that signals may interrupt.
#pragma once

#include <cerrno>

namespace tavrel::system {

// The result of `call`, made again as long as a signal interrupts it.
template <class Call>
[[nodiscard]] auto Uninterrupted(Call call) noexcept {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace tavrel::system
