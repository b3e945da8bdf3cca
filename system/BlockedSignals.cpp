#include "system/BlockedSignals.h"

namespace tavrel::system {
namespace {

sigset_t OnlyPipeSignal() noexcept {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  return signals;
}

bool PipeSignalWaits() noexcept {
  sigset_t waiting;
  sigemptyset(&waiting);
  sigpending(&waiting);
  return sigismember(&waiting, SIGPIPE) == 1;
}

}  // namespace

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

NoPipeSignal::NoPipeSignal() noexcept : waitedBefore_(PipeSignalWaits()) {
  const sigset_t pipe = OnlyPipeSignal();
  pthread_sigmask(SIG_BLOCK, &pipe, &former_);
}

NoPipeSignal::~NoPipeSignal() {
  const sigset_t pipe = OnlyPipeSignal();
  int taken = 0;
  if (!waitedBefore_ && PipeSignalWaits()) sigwait(&pipe, &taken);
  pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

}  // namespace tavrel::system
