// Work beside other work.
#pragma once

#include <future>
#include <system_error>

namespace tavrel::host {

// Has it done by another thread; where the system gives none, when its result is asked for.
template <typename Function>
[[nodiscard]] auto InBackground(const Function& work) {
  try {
    return std::async(std::launch::async, work);
  } catch (const std::system_error&) {
    return std::async(std::launch::deferred, work);
  }
}

}  // namespace tavrel::host
