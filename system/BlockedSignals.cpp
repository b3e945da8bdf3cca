#include "system/BlockedSignals.h"

namespace tavrel::system {

BlockedSignals::BlockedSignals(const sigset_t& signals) noexcept {
  pthread_sigmask(SIG_BLOCK, &signals, &former_);
}

BlockedSignals::~BlockedSignals() {
  pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

BlockedSignals BlockedSignals::All() noexcept {
  sigset_t all;
  sigfillset(&all);
  return BlockedSignals(all);
}

BlockedSignals BlockedSignals::Ending() noexcept {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int number : kEndingSignals) sigaddset(&ending, number);
  return BlockedSignals(ending);
}

}  // namespace tavrel::system
