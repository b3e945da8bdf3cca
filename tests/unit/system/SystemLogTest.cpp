#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "system/Memory.h"
#include "system/SystemLog.h"
#include "tests/support/CapturedStderr.h"

namespace faults = tavrel::system::faults;
using tavrel::system::Log;
using tavrel::test::CapturedStderr;

namespace {

std::string Logged(std::initializer_list<std::string_view> pieces) {
  const CapturedStderr error;
  Log(pieces);
  return error.Text();
}

// The message without the time, program name and process id before it.
std::string Message(const std::string& line) {
  const std::size_t heading = line.find("] ");
  return heading == std::string::npos ? "no heading: " + line : line.substr(heading + 2);
}

// While this lives, standard error is a pipe that nobody reads.
class BrokenError {
 public:
  BrokenError() : saved_(dup(STDERR_FILENO)) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
  }
  BrokenError(const BrokenError&) = delete;
  BrokenError& operator=(const BrokenError&) = delete;
  ~BrokenError() {
    dup2(saved_, STDERR_FILENO);
    close(saved_);
  }

 private:
  int saved_;
};

bool PipeSignalWaits() {
  sigset_t waiting;
  sigpending(&waiting);
  return sigismember(&waiting, SIGPIPE) == 1;
}

}  // namespace

TEST(SystemLog, ABrokenPipeDoesNotEndTheHost) {
  struct sigaction former = {};
  struct sigaction ending = {};
  ending.sa_handler = SIG_DFL;
  sigaction(SIGPIPE, &ending, &former);
  {
    const BrokenError error;
    for (int i = 0; i < 3; ++i) Log({"nobody reads this"});
  }
  EXPECT_FALSE(PipeSignalWaits());
  sigaction(SIGPIPE, &former, nullptr);
}

TEST(SystemLog, ABrokenPipeLeavesASignalThatWaitedBefore) {
  sigset_t pipe;
  sigset_t former;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &pipe, &former);
  raise(SIGPIPE);
  {
    const BrokenError error;
    Log({"nobody reads this"});
  }
  EXPECT_TRUE(PipeSignalWaits());
  int taken = 0;
  sigwait(&pipe, &taken);
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

TEST(SystemLog, WritesTimeProgramAndProcessBeforeTheText) {
  const std::string line = Logged({"Open iTunes Library file error!"});
  EXPECT_THAT(line, testing::MatchesRegex(
                        "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} "
                        "unit_tests\\[" +
                        std::to_string(getpid()) + "\\] Open iTunes Library file error!\n"));
}

TEST(SystemLog, JoinsThePiecesIntoOneLine) {
  EXPECT_EQ(Message(Logged({"XML text \"", "A &amp", "\" Escaping has no ending"})),
            "XML text \"A &amp\" Escaping has no ending\n");
  EXPECT_EQ(Message(Logged({"1", "2", "3", "4", "5", "6"})), "123456\n");
  EXPECT_EQ(Message(Logged({"1", "2", "3", "4", "5", "6", "7", "8"})), "123456\n");
  EXPECT_EQ(Message(Logged({"", "a", "", "b", ""})), "ab\n");
}

TEST(SystemLog, NeverTakesATextForAFormat) {
  EXPECT_EQ(Message(Logged({"%s%n%d%%", "%1$s %100000000d"})), "%s%n%d%%%1$s %100000000d\n");
}

TEST(SystemLog, WritesBytesAsTheyAre) {
  EXPECT_EQ(Message(Logged({std::string_view("a\0b\xFF", 4)})), std::string("a\0b\xFF\n", 5));
}

TEST(SystemLog, AddsALineFeedUnlessTheTextEndsWithOne) {
  EXPECT_EQ(Message(Logged({"text\n"})), "text\n");
  EXPECT_EQ(Message(Logged({"text\n", ""})), "text\n");
  EXPECT_EQ(Message(Logged({""})), "\n");
}

TEST(SystemLog, WritesLongTextsWhole) {
  const std::string text(500000, 'x');
  EXPECT_TRUE(Message(Logged({text})) == text + "\n");
}

TEST(SystemLog, WritesALineForEachMessage) {
  const CapturedStderr error;
  Log({"first"});
  Log({"second"});
  const std::string text = error.Text();
  const std::size_t end = text.find('\n');
  EXPECT_EQ(Message(text.substr(0, end)), "first");
  EXPECT_EQ(Message(text.substr(end + 1)), "second\n");
}

TEST(SystemLog, KeepsErrnoAndNeedsNoMemory) {
  const CapturedStderr error;
  errno = 77;
  faults::FailAfter(0, false);
  Log({"text"});
  EXPECT_EQ(errno, 77);
  EXPECT_EQ(faults::Asked(), 0);
  faults::Stop();
  EXPECT_EQ(Message(error.Text()), "text\n");
}

TEST(SystemLog, SurvivesAClosedStandardError) {
  const int saved = dup(STDERR_FILENO);
  close(STDERR_FILENO);
  Log({"text"});
  dup2(saved, STDERR_FILENO);
  close(saved);
}

TEST(SystemLog, WritesTheWholeTextToASlowReader) {
  // Signals cut the writing short: each part has to go on where the last one ended.
  struct sigaction former;
  struct sigaction ignoring = {};
  ignoring.sa_handler = [](int) {};
  ASSERT_EQ(sigaction(SIGALRM, &ignoring, &former), 0);
  const itimerval often = {{0, 2000}, {0, 2000}};
  const itimerval never = {};
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const int saved = dup(STDERR_FILENO);
  const std::string text(300000, 'y');
  const pid_t reader = fork();
  ASSERT_GE(reader, 0);
  if (reader == 0) {
    close(ends[1]);
    std::string got;
    char piece[1000];
    for (ssize_t n = 0; (n = read(ends[0], piece, sizeof piece)) > 0;) {
      got.append(piece, static_cast<std::size_t>(n));
      usleep(500);
    }
    _exit(Message(got) == text + "\n" ? 0 : 1);
  }
  close(ends[0]);
  dup2(ends[1], STDERR_FILENO);
  close(ends[1]);
  setitimer(ITIMER_REAL, &often, nullptr);
  Log({text});
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &former, nullptr);
  dup2(saved, STDERR_FILENO);
  close(saved);
  int status = 1;
  ASSERT_EQ(waitpid(reader, &status, 0), reader);
  EXPECT_EQ(status, 0);
}
