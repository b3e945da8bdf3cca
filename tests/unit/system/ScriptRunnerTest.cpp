// What a script and its runner get, and what the host gets back.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>
#include <thread>

#include "system/ScriptRunner.h"
#include "tests/support/StandInRunner.h"

namespace tavrel::system {
namespace {

using test::Contents;
using test::kRecord;
using test::ScopedVariable;
using test::StandInRunner;
using test::TemporaryFolder;
using test::WriteProgram;
using testing::HasSubstr;

// What goes to a descriptor during the life of the object.
class Captured {
 public:
  explicit Captured(int descriptor) : descriptor_(descriptor), saved_(dup(descriptor)) {
    const int file = open(folder_.Write("captured", "").c_str(), O_WRONLY | O_APPEND);
    dup2(file, descriptor);
    close(file);
  }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;
  ~Captured() {
    dup2(saved_, descriptor_);
    close(saved_);
  }
  [[nodiscard]] std::string Text() const { return Contents(folder_.PathOf("captured")); }

 private:
  TemporaryFolder folder_;
  int descriptor_;
  int saved_;
};

int OpenDescriptors() {
  int count = 0;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    count += fcntl(descriptor, F_GETFD) >= 0 ? 1 : 0;
  }
  return count;
}

bool RunWith(std::string_view body) {
  const StandInRunner runner(body);
  return RunScript("x");
}

TEST(FindScriptRunner, TakesTheFirstExecutableFileOnThePath) {
  const TemporaryFolder folder;
  folder.Write("not-executable/osascript", "#!/bin/sh\n");
  folder.Write("is-a-folder/osascript/file", "");
  WriteProgram(folder.PathOf("first/osascript"), "");
  WriteProgram(folder.PathOf("second/osascript"), "");
  std::string path;
  for (const char* name : {"missing", "not-executable", "is-a-folder", "first", "second"}) {
    path += folder.PathOf(name) + ":";
  }
  const ScopedVariable variable("PATH", path.c_str());
  EXPECT_EQ(FindScriptRunner(), folder.PathOf("first/osascript"));
}

TEST(FindScriptRunner, FindsNothingWithoutAPath) {
  const ScopedVariable variable("PATH", nullptr);
  EXPECT_EQ(FindScriptRunner(), std::nullopt);
}

TEST(FindScriptRunner, PassesOverElementsOfThePathThatAreNotAbsolute) {
  const TemporaryFolder folder;
  WriteProgram(folder.PathOf("osascript"), "");
  const std::filesystem::path former = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  for (const char* path : {"", ":", "::", ":/nowhere", "/nowhere:", "/nowhere::/nowhere", ".",
                           "/nowhere:.", "./", "../"}) {
    const ScopedVariable variable("PATH", path);
    EXPECT_EQ(FindScriptRunner(), std::nullopt) << path;
  }
  std::filesystem::current_path(former);
}

TEST(RunScript, FailsWithoutARunner) {
  const TemporaryFolder folder;
  const ScopedVariable path("PATH", folder.path().c_str());
  EXPECT_FALSE(RunScript("x"));
}

TEST(RunScript, HandsTheScriptOverByteForByte) {
  const StandInRunner runner(kRecord);
  const std::string script("line\n\0\xFF\\\"$(exit 1)%s", 20);
  EXPECT_TRUE(RunScript(script));
  EXPECT_EQ(runner.Kept("script"), script);
}

TEST(RunScript, HandsOverAScriptOfAnySize) {
  const StandInRunner runner(kRecord);
  const std::string script(3 << 20, 'x');
  EXPECT_TRUE(RunScript(script));
  EXPECT_EQ(runner.Kept("script").size(), script.size());
}

TEST(RunScript, HandsOverAnEmptyScript) {
  const StandInRunner runner(kRecord);
  EXPECT_TRUE(RunScript(""));
  EXPECT_EQ(runner.Kept("script"), "");
}

TEST(RunScript, FailsWhenTheRunnerExitsWithAnythingButZero) {
  EXPECT_FALSE(RunWith("exit 1"));
  EXPECT_FALSE(RunWith("exit 255"));
  EXPECT_TRUE(RunWith("exit 0"));
}

TEST(RunScript, FailsWhenTheRunnerIsKilled) {
  for (const char* body : {"kill -KILL $$", "kill -TERM $$", "kill -PIPE $$"}) {
    const StandInRunner runner(body);
    EXPECT_FALSE(RunScript("x")) << body;
  }
}

TEST(RunScript, FailsWhenTheRunnerCannotBeStarted) {
  const StandInRunner runner("");
  runner.folder().Write("osascript", "#!/nowhere/interpreter\n");
  EXPECT_FALSE(RunScript("x"));
}

TEST(RunScript, ReturnsWhenTheRunnerHasEnded) {
  const StandInRunner runner("sleep 0.4; echo done > \"$0.end\"");
  EXPECT_TRUE(RunScript("x"));
  EXPECT_EQ(runner.Kept("end"), "done\n");
}

// The runner's last descriptor on our side closes long before it ends; nor does a process that it
// leaves behind keep the call waiting.
TEST(RunScript, WaitsForTheRunnerAloneWhateverItsDescriptorsDo) {
  const StandInRunner runner(
      "exec <&- >&- 2>&-; sleep 1000 & echo $! > \"$0.left\"; sleep 0.4; echo done > \"$0.end\"");
  EXPECT_TRUE(RunScript("x"));
  EXPECT_EQ(runner.Kept("end"), "done\n");
  const pid_t left = std::stoi(runner.Kept("left"));
  EXPECT_EQ(kill(left, SIGKILL), 0) << "it has not ended by itself";
}

TEST(RunScript, ARunnerThatLeavesItsInputUnreadRaisesNoSignalInTheHost) {
  static volatile sig_atomic_t raised = 0;
  struct sigaction former;
  struct sigaction action = {};
  action.sa_handler = [](int) { raised = 1; };
  sigaction(SIGPIPE, &action, &former);
  const StandInRunner runner("exit 0");
  EXPECT_TRUE(RunScript(std::string(3 << 20, 'x')));
  EXPECT_EQ(raised, 0);
  sigaction(SIGPIPE, &former, nullptr);
}

TEST(RunScript, BothOutputsGoToTheHostsStandardError) {
  const StandInRunner runner("echo to-output; echo to-error >&2");
  const Captured output(STDOUT_FILENO);
  const Captured error(STDERR_FILENO);
  EXPECT_TRUE(RunScript("x"));
  EXPECT_EQ(error.Text(), "to-output\nto-error\n");
  EXPECT_EQ(output.Text(), "");
}

// ---- The state in which the runner starts -------------------------------------------------------

std::string Report() {
  const ScopedVariable path("PATH", TAVREL_REPORTER_FOLDER);
  const Captured error(STDERR_FILENO);
  EXPECT_TRUE(RunScript("x"));
  return error.Text();
}

TEST(RunScript, TheRunnerHasItsOwnThreeDescriptorsOnly) {
  const int low = open("/dev/null", O_RDONLY);
  const int high = fcntl(low, F_DUPFD, 900);
  ASSERT_GE(high, 900);
  EXPECT_THAT(Report(), HasSubstr("descriptors: 0 1 2\n"));
  close(low);
  close(high);
}

TEST(RunScript, TheRunnerHasDefaultSignalActionsAndNoneBlocked) {
  const int ignored[] = {SIGINT, SIGQUIT, SIGPIPE, SIGCHLD, SIGHUP, SIGTERM, SIGRTMIN};
  for (const int number : ignored) signal(number, SIG_IGN);
  sigset_t blocked;
  sigset_t former;
  sigemptyset(&blocked);
  for (const int number : {SIGINT, SIGUSR1, SIGCHLD, SIGRTMIN + 1}) sigaddset(&blocked, number);
  sigprocmask(SIG_SETMASK, &blocked, &former);
  const std::string report = Report();
  sigset_t after;
  sigprocmask(SIG_SETMASK, &former, &after);
  EXPECT_THAT(report, HasSubstr("ignored:\nblocked:\n"));

  // The host's own state is as it was.
  for (int number = 1; number < NSIG; ++number) {
    EXPECT_EQ(sigismember(&after, number), sigismember(&blocked, number)) << number;
  }
  for (const int number : ignored) EXPECT_EQ(signal(number, SIG_DFL), SIG_IGN) << number;
}

TEST(RunScript, TheRunnerHasTheHostsEnvironmentAndNoArguments) {
  const ScopedVariable variable("TAVREL_TEST_VARIABLE", "some value");
  EXPECT_THAT(Report(), HasSubstr("arguments: 1\nTAVREL_TEST_VARIABLE=some value\n"));
}

// ---- Hosts with habits of their own -------------------------------------------------------------

void ExpectRightResults() {
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(RunWith("sleep 0.1"));
    EXPECT_FALSE(RunWith("sleep 0.1; exit 3"));
  }
  errno = 0;
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a process is left";
  EXPECT_EQ(errno, ECHILD);
}

TEST(RunScript, LeavesNoProcessAndNoDescriptorBehind) {
  const int before = OpenDescriptors();
  ExpectRightResults();
  const ScopedVariable path("PATH", "/nowhere");
  EXPECT_FALSE(RunScript("x"));
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(RunScript, TheResultIsRightWhenTheHostIgnoresSigchld) {
  const auto former = signal(SIGCHLD, SIG_IGN);
  ExpectRightResults();
  signal(SIGCHLD, former);
}

TEST(RunScript, TheResultIsRightWhenTheHostReapsItsChildrenInAHandler) {
  struct sigaction former;
  struct sigaction action = {};
  action.sa_handler = [](int) {
    const int error = errno;
    while (waitpid(-1, nullptr, WNOHANG) > 0) continue;
    errno = error;
  };
  sigaction(SIGCHLD, &action, &former);
  ExpectRightResults();
  sigaction(SIGCHLD, &former, nullptr);
}

TEST(RunScript, TheResultIsRightWhenAnotherThreadOfTheHostReapsItsChildren) {
  std::atomic<bool> stop{false};
  std::atomic<int> reaped{0};
  std::thread reaper([&] {
    while (!stop) reaped += waitpid(-1, nullptr, 0) > 0 ? 1 : 0;
  });
  // Each time it is open which of the two threads sees the child end.
  for (int round = 0; round < 200 && reaped < 5; ++round) {
    EXPECT_TRUE(RunWith("exit 0"));
    EXPECT_FALSE(RunWith("exit 3"));
  }
  stop = true;
  reaper.join();
  EXPECT_GE(reaped, 5) << "the other thread was too slow: nothing was tested";
}

TEST(RunScript, TheResultIsRightWhenTheHostKeepsNoZombies) {
  struct sigaction former;
  struct sigaction action = {};
  action.sa_handler = SIG_DFL;
  action.sa_flags = SA_NOCLDWAIT;
  sigaction(SIGCHLD, &action, &former);
  ExpectRightResults();
  sigaction(SIGCHLD, &former, nullptr);
}

TEST(RunScript, LeavesTheHostsOtherChildrenToTheHost) {
  const pid_t other = fork();
  if (other == 0) _exit(7);
  EXPECT_TRUE(RunWith("sleep 0.1"));
  int status = 0;
  EXPECT_EQ(waitpid(other, &status, 0), other);
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST(RunScript, SignalsThatTheHostHandlesDoNotCutTheWaitShort) {
  struct sigaction former;
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, &former);
  const itimerval often = {{0, 20000}, {0, 20000}};
  const itimerval never = {};
  setitimer(ITIMER_REAL, &often, nullptr);
  const StandInRunner runner("sleep 0.4; echo done > \"$0.end\"");
  EXPECT_TRUE(RunScript("x"));
  EXPECT_EQ(runner.Kept("end"), "done\n");
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &former, nullptr);
}

// As from a terminal: the signal goes to the host and to everything that it has started.
TEST(RunScript, ASignalToTheWholeProcessGroupDoesNotCutTheWaitShort) {
  const StandInRunner runner(
      "trap : TERM; echo up > \"$0.up\"; sleep 0.3; sleep 0.3; echo done > \"$0.end\"");
  const pid_t host = fork();
  if (host == 0) {
    setpgid(0, 0);
    signal(SIGTERM, SIG_IGN);
    _exit(RunScript("x") && runner.Kept("end") == "done\n" ? 0 : 1);
  }
  while (runner.Kept("up").empty()) usleep(10000);
  kill(-host, SIGTERM);
  int status = 0;
  waitpid(host, &status, 0);
  EXPECT_EQ(status, 0);
}

#if defined(__linux__)
// Everything that writes to the pipe has ended when its end is read.
TEST(RunScript, TheRunnerDoesNotGoOnWhenTheHostIsKilled) {
  const StandInRunner runner("echo up; sleep 2 >&- 2>&-; echo went on");
  for (const int number : {SIGKILL, SIGTERM}) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t host = fork();
    if (host == 0) {
      dup2(ends[1], STDERR_FILENO);
      _exit(RunScript("x") ? 0 : 1);
    }
    close(ends[1]);
    std::string said;
    char piece[64];
    for (ssize_t count; (count = read(ends[0], piece, sizeof piece)) > 0;) {
      said.append(piece, static_cast<std::size_t>(count));
      if (said == "up\n") kill(host, number);
    }
    close(ends[0]);
    EXPECT_EQ(said, "up\n");
    waitpid(host, nullptr, 0);
  }
}
#endif

TEST(RunScript, WorksInAHostWithoutStandardDescriptors) {
  const StandInRunner runner("echo noise; echo noise >&2; cat > \"$0.script\"");
  const std::string script(100000, 'x');
  for (const unsigned closed : {1u, 2u, 4u, 3u, 5u, 6u, 7u}) {
    const pid_t host = fork();
    if (host == 0) {
      for (int descriptor = 0; descriptor < 3; ++descriptor) {
        if ((closed >> descriptor & 1u) != 0) close(descriptor);
      }
      _exit(RunScript(script) && runner.Kept("script") == script ? 0 : 1);
    }
    int status = 0;
    waitpid(host, &status, 0);
    EXPECT_EQ(status, 0) << closed;
  }
}

TEST(RunScript, FailsWhenTheHostHasNoDescriptorLeft) {
  const StandInRunner runner("exit 0");
  const pid_t host = fork();
  if (host == 0) {
    while (dup(STDERR_FILENO) >= 0) continue;
    _exit(RunScript("x") ? 1 : 0);
  }
  int status = 0;
  waitpid(host, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace tavrel::system
