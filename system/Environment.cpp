#include "system/Environment.h"

#include <stdlib.h>
#include <unistd.h>

namespace tavrel::system {

const char* TrustedVariable(const char* name) noexcept {
#if defined(__linux__)
  return secure_getenv(name);  // NOLINT(concurrency-mt-unsafe): only reads
#else
  return issetugid() != 0 ? nullptr : getenv(name);  // NOLINT(concurrency-mt-unsafe)
#endif
}

}  // namespace tavrel::system
