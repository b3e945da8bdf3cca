#include "host/output/Opening.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "system/Uninterrupted.h"

extern char** environ;

namespace tavrel::host {

bool OpenForUser(const std::string& path) {
#if defined(__APPLE__)
  char program[] = "open";
#else
  char program[] = "xdg-open";
#endif
  // A name that begins with a dash is no option.
  std::string file = path.starts_with('/') ? path : "./" + path;
  char* const arguments[] = {program, file.data(), nullptr};
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  // What the browser says is no news to the user of this program.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ::posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
  }
  pid_t process = -1;
  const int failed = ::posix_spawnp(&process, program, &actions, nullptr, arguments, environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) return false;
  int status = 0;
  (void)system::Uninterrupted([&] { return ::waitpid(process, &status, 0); });
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace tavrel::host
