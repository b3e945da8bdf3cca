#include "bench/support/LoadedLibrary.h"

#include <stdlib.h>

#include <stdexcept>

namespace tavrel::bench {

LoadedLibrary::LoadedLibrary(const std::string& file) : home_(std::make_unique<LinkedHome>(file)) {
  setenv("HOME", home_->path().c_str(), 1);
  if (AgentInitializer() != 0) throw std::runtime_error(file + " cannot be used");
  state_ = g_pGlobal;
}

}  // namespace tavrel::bench
