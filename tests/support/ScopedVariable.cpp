#include "tests/support/ScopedVariable.h"

#include <stdlib.h>

namespace tavrel::test {

ScopedVariable::ScopedVariable(const char* name, const char* value)
    : name_(name), wasSet_(getenv(name) != nullptr), former_(wasSet_ ? getenv(name) : "") {
  if (value != nullptr) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
}

ScopedVariable::~ScopedVariable() {
  if (wasSet_) {
    setenv(name_, former_.c_str(), 1);
  } else {
    unsetenv(name_);
  }
}

}  // namespace tavrel::test
