#include "bench/host/Programs.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "bench/support/Clocks.h"

extern char** environ;

namespace tavrel::bench {
namespace {

// Result: the exit code; -1 when it cannot be run, or a signal ended it.
int Run(const ProgramLine& line, const std::string& outputFile) {
  std::vector<char*> arguments;
  for (const std::string& argument : line) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = -1;
  const int error =
      posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (error != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

}  // namespace

double SecondsOfProgram(const ProgramLine& line, const std::string& outputFile) {
  int code = 0;
  const double seconds = ProcessorSecondsOf([&] { code = Run(line, outputFile); });
  if (code == 0) return seconds;
  std::string words;
  for (const std::string& argument : line) words += (words.empty() ? "" : " ") + argument;
  throw std::runtime_error("this did not run well: " + words);
}

bool HasProgram(const std::string& program) {
  return Run({program, "--version"}, "/dev/null") == 0;
}

}  // namespace tavrel::bench
