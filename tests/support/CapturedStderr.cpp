#include "tests/support/CapturedStderr.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#if defined(__linux__)
#include <sys/mman.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>

namespace tavrel::test {

namespace {

int TemporaryFile() {
#if defined(__linux__)
  return memfd_create("stderr", MFD_CLOEXEC);  // far cheaper than a file with a name
#else
  char name[] = "/tmp/tavrel-stderr-XXXXXX";
  const int file = mkstemp(name);
  unlink(name);
  return file;
#endif
}

}  // namespace

CapturedStderr::CapturedStderr() : saved_(dup(STDERR_FILENO)), file_(TemporaryFile()) {
  std::fflush(stderr);
  dup2(file_, STDERR_FILENO);
}

CapturedStderr::~CapturedStderr() {
  std::fflush(stderr);
  dup2(saved_, STDERR_FILENO);
  close(saved_);
  close(file_);
}

std::string CapturedStderr::Text() const {
  std::fflush(stderr);
  std::string text(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
  const ssize_t got = pread(file_, text.data(), text.size(), 0);
  text.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
  return text;
}

std::vector<std::string> CapturedStderr::Messages() const {
  std::vector<std::string> messages;
  std::istringstream lines(Text());
  for (std::string line; std::getline(lines, line);) messages.push_back(MessageOfLine(line));
  return messages;
}

std::string MessageOfLine(const std::string& line) {
  const std::string heading = std::string(" ") + program_invocation_short_name + "[" +
                              std::to_string(static_cast<long>(getpid())) + "] ";
  const std::size_t at = line.find(heading);
  if (at == std::string::npos) {
    ADD_FAILURE() << "no log line: " << line.substr(0, 200);
    return line;
  }
  std::string time = line.substr(0, at);
  std::replace_if(
      time.begin(), time.end(), [](char c) { return c >= '0' && c <= '9'; }, '0');
  EXPECT_EQ(time, "0000-00-00 00:00:00.000");
  return line.substr(at + heading.size());
}

}  // namespace tavrel::test
