// Which of the library's calls to the system fails, and how. The linker leads those calls through this
// program (AllocationCount.cpp, FailingCalls.cpp), which asks here first.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavrel::test {

// What is counted together, and fails together.
enum class CallKind {
  Memory,   // malloc, calloc, realloc, operator new, mmap
  Open,     // of files
  Stat,     // of a path or a descriptor
  List,     // of folders: opening one, and each of its entries
  Read,     // of a file's bytes
  Process,  // fork
};
inline constexpr int kCallKinds = 6;

// The n-th call of a kind, counted from 0, and all later ones unless `once`.
struct FaultPlan {
  CallKind kind;
  std::int64_t n;
  bool once = true;
  int error = 0;  // what errno says; 0: nothing fails, a read is short
  // Of a short read: how many of the bytes that were asked for are read.
  std::size_t (*shortened)(std::size_t asked) = nullptr;
};

// Counting begins at 0, whatever the kind.
void BeginFaults(const FaultPlan& plan) noexcept;
void EndFaults() noexcept;
// Calls since BeginFaults(), those that failed included.
[[nodiscard]] std::int64_t CallsMade(CallKind kind) noexcept;
// How many of them failed, or were short.
[[nodiscard]] std::int64_t FaultsMet() noexcept;

// For the calls themselves: counts one of the library's, and says what is to become of it.
[[nodiscard]] const FaultPlan* FaultOfNextCall(CallKind kind) noexcept;
// The same for calls that can only fail: errno is set when this one must.
[[nodiscard]] bool NextCallFails(CallKind kind) noexcept;

// Descriptors that were opened without being closed on exec from the start, since the program's.
[[nodiscard]] int InheritedDescriptors() noexcept;

}  // namespace tavrel::test
