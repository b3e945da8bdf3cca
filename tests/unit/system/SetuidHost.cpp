// A program that runs with other rights than its caller's prints where it takes its home to be, and which
// script runner it would start.
#include <cstdio>

#include "system/HomeFolder.h"
#include "system/ScriptRunner.h"

int main() {
  const auto home = tavrel::system::HomeFolder();
  const auto runner = tavrel::system::FindScriptRunner();
  std::printf("%s %s\n", home ? home->c_str() : "none", runner ? runner->c_str() : "none");
}
