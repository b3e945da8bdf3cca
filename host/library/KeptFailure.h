// What visitors of the library throw.
#pragma once

#include <cstdint>
#include <exception>

namespace tavrel::host {

// A failure of a visitor, which may not pass through the library that calls it: it waits until the walk is over.
class KeptFailure {
 public:
  // What `visit` gives back; 0, which ends the walk, when it throws.
  template <typename Visit>
  std::int32_t Keep(Visit visit) noexcept {
    try {
      return visit();
    } catch (...) {
      failure_ = std::current_exception();
      return 0;
    }
  }

  // Throws what was kept, if anything was.
  void Throw() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::exception_ptr failure_;
};

}  // namespace tavrel::host
