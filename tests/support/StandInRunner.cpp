#include "tests/support/StandInRunner.h"

#include <stdlib.h>

#include <iterator>

namespace tavrel::test {
namespace {

std::string WithPath(const std::string& folder) {
  const char* path = getenv("PATH");
  return path == nullptr ? folder : folder + ":" + path;
}

}  // namespace

void WriteProgram(const std::string& path, std::string_view body) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << "#!/bin/sh\n" << body;
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

StandInRunner::StandInRunner(std::string_view body)
    : path_("PATH", WithPath(folder_.path()).c_str()) {
  WriteProgram(folder_.PathOf("osascript"), body);
}

std::string StandInRunner::Kept(std::string_view extension) const {
  return Contents(folder_.PathOf(std::string("osascript.").append(extension)));
}

}  // namespace tavrel::test
