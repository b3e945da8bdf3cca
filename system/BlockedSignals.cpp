#include "system/BlockedSignals.h"

#include <time.h>

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

bool EndingSignalWaits() noexcept {
  sigset_t waiting;
  sigemptyset(&waiting);
  sigpending(&waiting);
  for (const int number : kEndingSignals) {
    if (sigismember(&waiting, number) != 1) continue;
    // Also one that is ignored waits where it is blocked.
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler != SIG_IGN) return true;
  }
  return false;
}

NoPipeSignal::NoPipeSignal() noexcept : waitedBefore_(PipeSignalWaits()) {
  const sigset_t pipe = OnlyPipeSignal();
  pthread_sigmask(SIG_BLOCK, &pipe, &former_);
}

NoPipeSignal::~NoPipeSignal() {
  if (isBroken_ && !waitedBefore_ && PipeSignalWaits()) {
    const sigset_t pipe = OnlyPipeSignal();
#if defined(__linux__)
    constexpr timespec kAtOnce{};
    sigtimedwait(&pipe, nullptr, &kAtOnce);
#else
    int taken = 0;
    sigwait(&pipe, &taken);
#endif
  }
  pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

}  // namespace tavrel::system
