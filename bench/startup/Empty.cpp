// The library that startup compares with: the loader finds it, maps it, and finds all that it
// depends on; it does nothing.
#include <unistd.h>

// One call, so that it depends on the C library too.
extern "C" __attribute__((visibility("default"))) int Nothing() {
  return getpid();
}
