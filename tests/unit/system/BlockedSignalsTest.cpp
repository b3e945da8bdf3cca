// Signals that wait, and system calls that signals interrupt.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <thread>

#include "system/BlockedSignals.h"
#include "system/Files.h"
#include "system/Uninterrupted.h"

using tavrel::system::BlockedSignals;
using tavrel::system::EndingSignalWaits;
using tavrel::system::FileDescriptor;
using tavrel::system::Uninterrupted;
using tavrel::system::WriteFully;

namespace {

volatile sig_atomic_t caught = 0;

// Counts a signal while it lives.
class Caught {
 public:
  explicit Caught(int number) : number_(number) {
    caught = 0;
    struct sigaction counting = {};
    counting.sa_handler = [](int) { caught = caught + 1; };
    sigaction(number, &counting, &former_);
  }
  Caught(const Caught&) = delete;
  Caught& operator=(const Caught&) = delete;
  ~Caught() { sigaction(number_, &former_, nullptr); }

 private:
  int number_;
  struct sigaction former_ = {};
};

}  // namespace

TEST(BlockedSignals, AnEndingSignalWaitsForTheEndOfTheObject) {
  for (const int number : tavrel::system::kEndingSignals) {
    const Caught counting(number);
    {
      const auto blocked = BlockedSignals::Ending();
      raise(number);
      EXPECT_EQ(caught, 0) << number;
    }
    EXPECT_EQ(caught, 1) << number;
  }
}

TEST(BlockedSignals, OnlyOneThatWillEndTheProgramIsToldOf) {
  const auto blocked = BlockedSignals::Ending();
  EXPECT_FALSE(EndingSignalWaits());
  raise(SIGTERM);
  EXPECT_TRUE(EndingSignalWaits());
  const auto former = signal(SIGTERM, SIG_IGN);
  EXPECT_FALSE(EndingSignalWaits()) << "somebody has chosen to ignore it";
  raise(SIGTERM);
  EXPECT_FALSE(EndingSignalWaits());
  signal(SIGTERM, SIG_IGN);  // takes away the one that waits
  signal(SIGTERM, former);
}

TEST(BlockedSignals, OtherSignalsWaitOnlyWhenAllDo) {
  const Caught counting(SIGURG);
  {
    const auto blocked = BlockedSignals::Ending();
    raise(SIGURG);
    EXPECT_EQ(caught, 1);
  }
  {
    const auto blocked = BlockedSignals::All();
    raise(SIGURG);
    EXPECT_EQ(caught, 1);
  }
  EXPECT_EQ(caught, 2);
}

TEST(BlockedSignals, WhatWasBlockedBeforeStaysBlocked) {
  const Caught counting(SIGTERM);
  const auto outer = BlockedSignals::Ending();
  { const auto inner = BlockedSignals::Ending(); }
  raise(SIGTERM);
  EXPECT_EQ(caught, 0);
}

TEST(Uninterrupted, ACallIsMadeAgainOnlyAfterASignal) {
  int calls = 0;
  EXPECT_EQ(Uninterrupted([&] {
              errno = EINTR;
              return ++calls < 3 ? -1 : 7;
            }),
            7);
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(Uninterrupted([&] {
              errno = EIO;
              ++calls;
              return -1;
            }),
            -1);
  EXPECT_EQ(calls, 4);
}

TEST(WriteFully, EveryByteIsWrittenHoweverFewTheReaderTakes) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const FileDescriptor from(ends[0]);
  const std::string bytes(std::size_t{1} << 20, 'x');  // more than a pipe holds
  std::string taken;
  {
    FileDescriptor to(ends[1]);
    std::thread reader([&] {
      char piece[1000];
      ssize_t got = 0;
      while ((got = read(from.get(), piece, sizeof piece)) > 0) {
        taken.append(piece, static_cast<std::size_t>(got));
      }
    });
    EXPECT_TRUE(WriteFully(to.get(), bytes));
    close(to.Release());
    reader.join();
  }
  EXPECT_TRUE(taken == bytes);
}

TEST(WriteFully, AnErrorIsTold) {
  errno = 0;
  EXPECT_FALSE(WriteFully(-1, "x"));
  EXPECT_EQ(errno, EBADF);
  EXPECT_TRUE(WriteFully(-1, ""));
}
