#include "system/ScriptRunner.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#if defined(__linux__)
#include <sys/prctl.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

#include "system/BlockedSignals.h"
#include "system/Files.h"
#include "system/Guard.h"
#include "system/Memory.h"
#include "system/Uninterrupted.h"

namespace tavrel::system {
namespace {

constexpr int kFirstFreeDescriptor = STDERR_FILENO + 1;

// Ours never take the place of a standard descriptor that the host has closed.
FileDescriptor AboveStandard(int descriptor) noexcept {
  FileDescriptor given(descriptor);
  if (!given || given.get() >= kFirstFreeDescriptor) return given;
  return FileDescriptor(fcntl(given.get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
}

// A file without a name. Unlike a pipe it takes a script of any size at once, and whether anybody
// reads it makes no difference to the writer.
FileDescriptor NamelessFile() noexcept {
#if defined(__linux__)
  FileDescriptor inMemory = AboveStandard(memfd_create("script", MFD_CLOEXEC));
  if (inMemory) return inMemory;
#endif
  char name[] = "/tmp/tavrel-script-XXXXXX";
  const int descriptor = mkostemp(name, O_CLOEXEC);
  if (descriptor >= 0) unlink(name);
  return AboveStandard(descriptor);
}

// A file that is read from the script's start; nothing is open when it cannot be made.
FileDescriptor FileOfScript(std::string_view script) noexcept {
  FileDescriptor file = NamelessFile();
  const bool complete =
      file && WriteFully(file.get(), script) && lseek(file.get(), 0, SEEK_SET) == 0;
  return complete ? std::move(file) : FileDescriptor();
}

// A flag that a process forked off can set and this one then see.
class SharedFlag {
 public:
  SharedFlag() noexcept {
    if (!AllocationAllowed()) return;
    void* page = mmap(nullptr, sizeof(std::atomic<bool>), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (page != MAP_FAILED) flag_ = new (page) std::atomic<bool>(false);
  }
  SharedFlag(const SharedFlag&) = delete;
  SharedFlag& operator=(const SharedFlag&) = delete;
  ~SharedFlag() {
    if (flag_ != nullptr) munmap(flag_, sizeof *flag_);
  }

  [[nodiscard]] explicit operator bool() const noexcept { return flag_ != nullptr; }
  [[nodiscard]] bool IsSet() const noexcept { return *flag_; }
  void Set() const noexcept { *flag_ = true; }

 private:
  std::atomic<bool>* flag_ = nullptr;
};

// False when the process was killed, exited with anything but 0, or was reaped by someone else.
bool WaitFor(pid_t process) noexcept {
  int status = 0;
  const pid_t ended = Uninterrupted([&] { return waitpid(process, &status, 0); });
  return ended == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// What follows runs in forked processes, before any exec: nothing there may allocate or lock, since
// another thread of the host may have been in the middle of it.

// Ignored signals would stay ignored in the runner, too.
void ResetSignalActions() noexcept {
  struct sigaction action = {};
  action.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number) sigaction(number, &action, nullptr);
}

void CloseFrom(int first) noexcept {
#if defined(__linux__)
  if (close_range(static_cast<unsigned>(first), ~0u, 0) == 0) return;
#endif
  const long limit = sysconf(_SC_OPEN_MAX);
  for (int descriptor = first; descriptor < limit; ++descriptor) close(descriptor);
}

void TakeDescriptors(int script) noexcept {
  dup2(script, STDIN_FILENO);
  if (dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {  // the host has closed it
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
  }
  CloseFrom(kFirstFreeDescriptor);
}

// Has this process killed when the one that has forked it off ends, however that ends. Where the system
// knows no such thing, it goes on.
void EndWith(pid_t parent) noexcept {
#if defined(__linux__)
  prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
  const pid_t now =
      getppid();  // 0: one that this process cannot see, in another space of process IDs
  if (now != parent && now != 0) _exit(EXIT_FAILURE);  // it has ended before
#else
  (void)parent;
#endif
}

[[noreturn]] void BecomeRunner(const char* runner, pid_t supervisor) noexcept {
  EndWith(supervisor);
  sigset_t none;
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
  char* const arguments[] = {const_cast<char*>(runner), nullptr};
  execv(runner, arguments);
  _exit(EXIT_FAILURE);
}

// Runs with all signals blocked, so that it outlives the runner.
[[noreturn]] void Supervise(const char* runner, int script, const SharedFlag& success,
                            pid_t host) noexcept {
  EndWith(host);
  ResetSignalActions();
  TakeDescriptors(script);
  const pid_t supervisor = getpid();
  const pid_t process = fork();
  if (process == 0) BecomeRunner(runner, supervisor);
  if (process > 0 && WaitFor(process)) success.Set();
  _exit(EXIT_SUCCESS);
}

pid_t StartSupervisor(const char* runner, int script, const SharedFlag& success) noexcept {
  const auto blocked = BlockedSignals::All();
  const pid_t host = getpid();
  const pid_t process = fork();
  if (process == 0) Supervise(runner, script, success, host);
  return process;
}

// A process of ours stands between the host and the runner. Whether the host ignores SIGCHLD or
// reaps every child in a handler is its own affair and may cost us the status of a child, but never
// that of a grandchild.
bool RunWith(const char* runner, std::string_view script) noexcept {
  const FileDescriptor file = FileOfScript(script);
  const SharedFlag success;
  if (!file || !success) return false;
  const pid_t supervisor = StartSupervisor(runner, file.get(), success);
  if (supervisor > 0) (void)WaitFor(supervisor);
  return success.IsSet();
}

}  // namespace

bool RunScript(std::string_view script) noexcept {
  return Guarded(false, [&] {
    const std::optional<std::string> runner = FindScriptRunner();
    return runner && RunWith(runner->c_str(), script);
  });
}

}  // namespace tavrel::system
