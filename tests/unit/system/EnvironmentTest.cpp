// A program that runs with other rights than its caller's is not led by the caller's environment.
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "system/Environment.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {
namespace {

constexpr uid_t kCaller = 65534;  // "nobody"

// Runs the program as a caller who has set HOME and PATH.
Outcome RunAsCaller(const std::string& program, const TemporaryFolder& folder) {
  Command command;
  command.arguments = {program};
  command.environment = {{"HOME", "/of/the/caller"}, {"PATH", folder.PathOf("bin")}};
  command.user = kCaller;
  return RunProgram(command);
}

}  // namespace

TEST(Environment, IsFollowedOnlyByProgramsWithTheirCallersRights) {
  if (geteuid() != 0) GTEST_SKIP() << "this user may not run a program as another one";
  const TemporaryFolder folder;
  WriteProgram(folder.PathOf("bin/osascript"), "");
  for (const std::string& shared :
       {std::string(folder.path()), folder.PathOf("bin"), folder.PathOf("bin/osascript")}) {
    std::filesystem::permissions(shared, std::filesystem::perms(0755));
  }
  const std::string ordinary = folder.PathOf("ordinary");
  const std::string setuid = folder.PathOf("setuid");
  std::filesystem::copy_file(TAVREL_SETUID_HOST, ordinary);
  std::filesystem::copy_file(TAVREL_SETUID_HOST, setuid);
  ASSERT_EQ(chmod(setuid.c_str(), 04755), 0);

  const passwd* entry = getpwuid(kCaller);
  const std::string home = entry != nullptr && entry->pw_dir[0] == '/' ? entry->pw_dir : "none";
  EXPECT_EQ(RunAsCaller(ordinary, folder).output,
            "/of/the/caller " + folder.PathOf("bin/osascript") + "\n");
  EXPECT_EQ(RunAsCaller(setuid, folder).output, home + " none\n");
}

}  // namespace tavrel::test
