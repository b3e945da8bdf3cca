// What libFuzzer calls: it has the main() of a program with one target.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzTarget.h"

using tavrel::fuzz::Target;

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Lines of the system log are no findings: libFuzzer closes standard error afterwards, when it is told to.
int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  const Target* target = Target::First();
  tavrel::fuzz::Require(target != nullptr && target->next() == nullptr, "One target is fuzzed");
  tavrel::fuzz::KeepStandardError();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Target::First()->Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
