// An environment variable for a while.
#pragma once

#include <string>

namespace tavrel::test {

// Sets an environment variable, or takes it out, and puts it back at the end.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value);  // null takes it out
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable();

 private:
  const char* name_;
  bool wasSet_;
  std::string former_;
};

}  // namespace tavrel::test
