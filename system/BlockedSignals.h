// Letting signals wait.
#pragma once

#include <signal.h>

#include <array>

namespace tavrel::system {

// Those with which users and systems end a program, unless it has made them mean something else.
inline constexpr std::array kEndingSignals {
  SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGALRM, SIGPROF, SIGVTALRM, SIGXCPU,
#if defined(__linux__)
      SIGIO, SIGPWR, SIGSTKFLT,
#endif
};

// Signals that wait, in the thread that made the object, until the object ends. A process that is
// forked off meanwhile begins with them blocked.
class BlockedSignals {
 public:
  [[nodiscard]] static BlockedSignals All() noexcept;
  [[nodiscard]] static BlockedSignals Ending() noexcept;
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  ~BlockedSignals();

 private:
  explicit BlockedSignals(const sigset_t& signals) noexcept;

  sigset_t former_;
};

// Whether one of the signals above waits, and will end the program once it need not: one that is ignored
// will not.
[[nodiscard]] bool EndingSignalWaits() noexcept;

// Writing, in the thread that made the object, to a pipe that nobody reads is an error and nothing more,
// whatever the program does with SIGPIPE. A signal that waited before stays.
class NoPipeSignal {
 public:
  NoPipeSignal() noexcept;
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;
  ~NoPipeSignal();

  // To be told of a write that failed with EPIPE: only then is there a signal to take away. One that
  // another process has sent meanwhile stays.
  void NoteBrokenPipe() noexcept { isBroken_ = true; }

 private:
  sigset_t former_;
  bool waitedBefore_;
  bool isBroken_ = false;
};

}  // namespace tavrel::system
