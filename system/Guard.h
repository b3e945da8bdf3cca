// The only place where exceptions are caught: no exported function lets one through, and inside the
// library nothing but exhausted memory throws.
#pragma once

namespace tavrel::system {

// The result of `body`, or `otherwise` when it throws.
template <class Result, class Body>
[[nodiscard]] Result Guarded(Result otherwise, Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return otherwise;
  }
}

}  // namespace tavrel::system
