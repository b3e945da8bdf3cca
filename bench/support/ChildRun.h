// Runs one measurement in a process of its own, so that no run inherits the memory of another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>

namespace tavrel::bench {

// Calls `work` in a child process, waits for it, and carries over what it has written to the
// `byteCount` bytes at `result`, which must be few enough for a pipe to take at once. Throws
// std::runtime_error with the message of the exception that `work` ended with, or with the signal
// that ended the child.
void RunInChild(const std::function<void()>& work, void* result, std::size_t byteCount);

// The same for a function with a result.
template <class Work>
auto RunInChild(const Work& work) {
  using Result = decltype(work());
  static_assert(std::is_trivially_copyable_v<Result>);
  Result result{};
  RunInChild([&] { result = work(); }, &result, sizeof result);
  return result;
}

// Lets a child process touch `byteCount` bytes and end. A virtual machine gives free pages back to
// its host, and the first touch of such a page costs many times that of a page that the machine
// still has; the process measured next would pay for it. Does less on machines with little memory.
void WarmMemory(std::uint64_t byteCount);

}  // namespace tavrel::bench
