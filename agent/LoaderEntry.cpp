// The loader's entry points, which only the shared library has.
#include "tavrel/tavrel.h"

namespace {

[[gnu::constructor]] void Load() noexcept {
  AgentInitializer();
}

[[gnu::destructor]] void Unload() noexcept {
  AgentFinalizer();
}

}  // namespace
