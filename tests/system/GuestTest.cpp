// A good guest: what belongs to the host's process is after a load, every use and an unload what it was
// before.
#include <dlfcn.h>
#include <fcntl.h>
#include <fenv.h>
#include <gtest/gtest.h>
#include <locale.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/WholeUse.h"

extern char** environ;

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLeastSeen = 100000;  // of the sample library, where it could be loaded

std::string EnvironmentText() {
  std::string text;
  for (char** variable = environ; *variable != nullptr; ++variable) text.append(*variable) += '\n';
  return text;
}

std::string SignalActions() {
  std::string text;
  for (int number = 1; number < NSIG; ++number) {
    struct sigaction action = {};
    if (sigaction(number, nullptr, &action) != 0) continue;
    text += std::to_string(reinterpret_cast<std::uintptr_t>(action.sa_handler)) + " " +
            std::to_string(action.sa_flags) + " ";
  }
  return text;
}

std::string SignalSet(int (*get)(sigset_t*)) {
  sigset_t signals;
  sigemptyset(&signals);
  get(&signals);
  std::string text;
  for (int number = 1; number < NSIG; ++number)
    text += sigismember(&signals, number) == 1 ? '1' : '0';
  return text;
}

std::string Limits() {
  std::string text;
  for (int resource = 0; resource < RLIM_NLIMITS; ++resource) {
    rlimit limit = {};
    getrlimit(static_cast<__rlimit_resource_t>(resource), &limit);
    text += std::to_string(limit.rlim_cur) + "/" + std::to_string(limit.rlim_max) + " ";
  }
  return text;
}

std::string Timers() {
  std::string text;
  for (const auto which : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) {
    itimerval timer = {};
    getitimer(which, &timer);
    text += std::to_string(timer.it_value.tv_sec) + " ";
  }
  return text;
}

// Every descriptor with what it leads to and its flags.
std::string Descriptors() {
  std::string text;
  for (int descriptor = 0; descriptor < 256; ++descriptor) {
    const int flags = fcntl(descriptor, F_GETFD);
    if (flags < 0) continue;
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    text += std::to_string(descriptor) + " " + fs::read_symlink(link).string() + " " +
            std::to_string(flags) + " " + std::to_string(fcntl(descriptor, F_GETFL)) + "\n";
  }
  return text;
}

std::string Children() {
  int status = 0;
  const pid_t child = waitpid(-1, &status, WNOHANG);
  return child < 0 ? "none" : "some";
}

mode_t FileMask() {
  const mode_t mask = umask(0);
  umask(mask);
  return mask;
}

std::map<std::string, std::string> Surroundings() {
  const auto threads = std::distance(fs::directory_iterator("/proc/self/task"), {});
  stack_t signalStack = {};
  sigaltstack(nullptr, &signalStack);
  return {{"working folder", fs::current_path().string()},
          {"file mask", std::to_string(FileMask())},
          {"environment", EnvironmentText()},
          {"variables' place", std::to_string(reinterpret_cast<std::uintptr_t>(environ))},
          {"locale", setlocale(LC_ALL, nullptr)},
          {"locale of the thread", std::to_string(uselocale(nullptr) == LC_GLOBAL_LOCALE)},
          {"signal actions", SignalActions()},
          {"blocked signals",
           SignalSet([](sigset_t* set) { return pthread_sigmask(SIG_SETMASK, nullptr, set); })},
          {"waiting signals", SignalSet(sigpending)},
          {"signal stack", std::to_string(signalStack.ss_flags)},
          {"limits", Limits()},
          {"timers", Timers()},
          {"priority", std::to_string(getpriority(PRIO_PROCESS, 0))},
          {"rounding", std::to_string(fegetround())},
          {"threads", std::to_string(threads)},
          {"children", Children()},
          {"descriptors", Descriptors()}};
}

// Standard output leads to a file of this object's; what was written to it can be asked for.
class WatchedOutput {
 public:
  WatchedOutput() : saved_(dup(STDOUT_FILENO)), file_(memfd_create("stdout", MFD_CLOEXEC)) {
    std::fflush(stdout);
    dup2(file_, STDOUT_FILENO);
  }
  WatchedOutput(const WatchedOutput&) = delete;
  WatchedOutput& operator=(const WatchedOutput&) = delete;
  ~WatchedOutput() {
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
    close(file_);
  }

  [[nodiscard]] off_t Written() const {
    std::fflush(stdout);
    return lseek(file_, 0, SEEK_END);
  }

 private:
  int saved_;
  int file_;
};

// Values that are not those a library would set by chance.
class OddSurroundings {
 public:
  OddSurroundings() : mask_(umask(0137)), folder_(fs::current_path()) {
    fs::current_path("/tmp");
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGUSR1, &ignore, &user_);
    sigaction(SIGPIPE, &ignore, &pipe_);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR2);
    pthread_sigmask(SIG_BLOCK, &blocked, &blocked_);
    fesetround(FE_UPWARD);
  }
  OddSurroundings(const OddSurroundings&) = delete;
  OddSurroundings& operator=(const OddSurroundings&) = delete;
  ~OddSurroundings() {
    fesetround(FE_TONEAREST);
    pthread_sigmask(SIG_SETMASK, &blocked_, nullptr);
    sigaction(SIGPIPE, &pipe_, nullptr);
    sigaction(SIGUSR1, &user_, nullptr);
    fs::current_path(folder_);
    umask(mask_);
  }

 private:
  mode_t mask_;
  fs::path folder_;
  struct sigaction user_ = {};
  struct sigaction pipe_ = {};
  sigset_t blocked_ = {};
};

class Guest : public testing::Test {
 protected:
  const ScopedVariable home_{"HOME", TAVREL_SAMPLE_HOME};
  const StandInRunner runner_{"exit 0"};
};

}  // namespace

// What is seen is compared when standard output leads to where tests are reported.
TEST_F(Guest, LeavesTheHostsProcessAsItWas) {
  std::map<std::string, std::string> before;
  std::map<std::string, std::string> loaded;
  std::map<std::string, std::string> used;
  std::map<std::string, std::string> unloaded;
  off_t written = -1;
  {
    const CapturedStderr log;
    const WatchedOutput output;
    const OddSurroundings odd;
    before = Surroundings();
    LoadedLibrary library;
    loaded = Surroundings();
    EXPECT_GT(UseEverything(FunctionsOf(library)).size(), kLeastSeen);
    EXPECT_EQ(Import(FunctionsOf(library)), 0);
    used = Surroundings();
    EXPECT_EQ(library.Unload(), 0);
    unloaded = Surroundings();
    written = output.Written();
  }
  EXPECT_EQ(loaded, before);
  EXPECT_EQ(used, before);
  EXPECT_EQ(unloaded, before);
  EXPECT_FALSE(IsLibraryMapped());
  EXPECT_EQ(written, 0);
}

// However the loader is asked.
TEST_F(Guest, IsTheSameBoundAtOnceOrLaterHereOrForAll) {
  const std::string expected = UseEverything(FunctionsOf(LoadedLibrary()));
  ASSERT_GT(expected.size(), kLeastSeen);
  for (const int flags : {RTLD_NOW | RTLD_LOCAL, RTLD_LAZY | RTLD_LOCAL, RTLD_NOW | RTLD_GLOBAL,
                          RTLD_LAZY | RTLD_GLOBAL}) {
    void* handle = dlopen(TAVREL_LIBRARY, flags);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_EQ(UseEverything(FunctionsOf(handle)) == expected, true) << flags;
    EXPECT_EQ(dlclose(handle), 0);
    EXPECT_FALSE(IsLibraryMapped());
  }
}

// A sanitizer's runtime stands in the first name space only.
#if !TAVREL_SANITIZED
TEST_F(Guest, IsTheSameInANameSpaceOfItsOwnBesideOneInTheHosts) {
  const LoadedLibrary first;
  const std::string expected = UseEverything(FunctionsOf(first));
  ASSERT_GT(expected.size(), kLeastSeen);
  void* handle = dlmopen(LM_ID_NEWLM, TAVREL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();
  EXPECT_NE(dlsym(handle, "g_pGlobal"), first.Get<void*>("g_pGlobal"));
  EXPECT_TRUE(UseEverything(FunctionsOf(handle)) == expected);
  EXPECT_EQ(dlclose(handle), 0);
  EXPECT_TRUE(UseEverything(FunctionsOf(first)) == expected);
}
#endif

}  // namespace tavrel::test
