#include "tests/fault/InsideLibrary.h"

namespace tavrel::test {
namespace {

constinit int depth = 0;

}  // namespace

InsideLibrary::InsideLibrary() noexcept {
  ++depth;
}

InsideLibrary::~InsideLibrary() {
  --depth;
}

bool IsInsideLibrary() noexcept {
  return depth > 0;
}

}  // namespace tavrel::test
