#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__APPLE__)
#include <util.h>
#else
#include <pty.h>
#endif

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace tavrel::test {
namespace {

// The two ends of a stream; -1 where there is none.
struct Ends {
  int parent = -1;
  int child = -1;
};

void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

Ends MakeTerminal(unsigned short columns) {
  Ends ends;
  winsize size{};
  size.ws_row = 24;
  size.ws_col = columns;
  Require(::openpty(&ends.parent, &ends.child, nullptr, nullptr, &size) == 0, "openpty");
  return ends;
}

Ends MakePipe() {
  std::array<int, 2> pipe{};
  Require(::pipe(pipe.data()) == 0, "pipe");
  return {pipe[0], pipe[1]};
}

Ends MakeStream(Stream stream, unsigned short columns) {
  switch (stream) {
    case Stream::Pipe:
      return MakePipe();
    case Stream::Terminal:
      return MakeTerminal(columns);
    case Stream::BrokenPipe: {
      const Ends ends = MakePipe();
      ::close(ends.parent);
      return {-1, ends.child};
    }
    case Stream::Full:
      return {-1, ::open("/dev/full", O_WRONLY)};
    case Stream::Closed:
      break;
  }
  return {};
}

void UseStream(int end, int descriptor) {
  if (end >= 0) {
    ::dup2(end, descriptor);
  } else {
    ::close(descriptor);
  }
}

void SetLimits(const Command& command) {
  const rlimit space{command.addressSpace, command.addressSpace};
  if (command.addressSpace > 0) ::setrlimit(RLIMIT_AS, &space);
  const rlimit size{command.fileSize.value_or(0), command.fileSize.value_or(0)};
  if (command.fileSize) ::setrlimit(RLIMIT_FSIZE, &size);
}

[[noreturn]] void RunChild(const Command& command, const Ends& output, const Ends& errors) {
  UseStream(output.child, STDOUT_FILENO);
  UseStream(errors.child, STDERR_FILENO);
  for (const int end : {output.parent, output.child, errors.parent, errors.child}) {
    if (end > STDERR_FILENO) ::close(end);
  }
  ::signal(SIGPIPE, SIG_DFL);
  for (const int number : command.ignoredSignals) ::signal(number, SIG_IGN);
  for (const auto& [name, value] : command.environment) {
    if (value) {
      ::setenv(name.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name.c_str());
    }
  }
  if (!command.folder.empty() && ::chdir(command.folder.c_str()) != 0) ::_exit(126);
  if (command.user != 0 && ::setuid(command.user) != 0) ::_exit(126);
  SetLimits(command);

  std::vector<char*> arguments;
  for (const std::string& argument : command.arguments) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

// Adds what is ready; false when the stream has ended. A terminal's end is an error, EIO.
bool ReadSome(int descriptor, std::string& text) {
  std::array<char, 65536> piece{};
  const ssize_t count = ::read(descriptor, piece.data(), piece.size());
  if (count < 0 && errno == EINTR) return true;
  if (count <= 0) return false;
  text.append(piece.data(), static_cast<std::size_t>(count));
  return true;
}

void WithoutCarriageReturns(std::string& text) {
  for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
}

}  // namespace

ChildProcess::ChildProcess(const Command& command) {
  const Ends output = MakeStream(command.output, command.columns);
  const Ends errors = MakeStream(command.errors, command.columns);
  process_ = ::fork();
  Require(process_ >= 0, "fork");
  if (process_ == 0) RunChild(command, output, errors);
  if (output.child >= 0) ::close(output.child);
  if (errors.child >= 0) ::close(errors.child);
  output_ = output.parent;
  errors_ = errors.parent;
}

ChildProcess::~ChildProcess() {
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  for (const int end : {output_, errors_}) {
    if (end >= 0) ::close(end);
  }
}

void ChildProcess::Signal(int number) const {
  ::kill(process_, number);
}

Outcome ChildProcess::Finish() {
  Outcome outcome;
  std::array<pollfd, 2> streams{{{output_, POLLIN, 0}, {errors_, POLLIN, 0}}};
  const std::array<std::string*, 2> texts{&outcome.output, &outcome.errors};
  while (streams[0].fd >= 0 || streams[1].fd >= 0) {
    if (::poll(streams.data(), streams.size(), -1) < 0) continue;
    for (std::size_t i = 0; i < streams.size(); ++i) {
      if (streams[i].fd >= 0 && streams[i].revents != 0 && !ReadSome(streams[i].fd, *texts[i])) {
        streams[i].fd = -1;
      }
    }
  }
  int status = 0;
  ::waitpid(process_, &status, 0);
  process_ = -1;
  if (WIFEXITED(status)) outcome.exitCode = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
  WithoutCarriageReturns(outcome.output);
  WithoutCarriageReturns(outcome.errors);
  return outcome;
}

Outcome RunProgram(const Command& command) {
  return ChildProcess(command).Finish();
}

}  // namespace tavrel::test
