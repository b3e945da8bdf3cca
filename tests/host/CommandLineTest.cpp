#include <gmock/gmock.h>
#include <tavrel/tavrel.h>

#include "tests/host/Fixture.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Soak.h"

namespace tavrel::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CommandLine : public HostTest {
 protected:
  std::string WritePlaylist(std::string_view name) const {
    return Write("library.xml",
                 LibraryText({{1, Property("Name", "Nimrod")}}, {{Property("Name", name), {1}}}));
  }
};

TEST_F(CommandLine, AWrongOneIsExitCode2AndPrintsNothing) {
  const std::vector<std::vector<std::string>> wrong{
      {"--bogus"},
      {"frobnicate"},
      {"songs", "--all", "Music"},
      {"songs", "Music", "Films"},
      {"playlists", "extra"},
      {"--home"},
      {"--library"},
      {"--home", ""},
      {"--library", ""},
      {"--home", "a", "--library", "b"},
      {"playlists", "songs", "--all"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.output, "") << testing::PrintToString(arguments);
    EXPECT_THAT(outcome.errors, StartsWith("tavrel: ")) << testing::PrintToString(arguments);
    EXPECT_THAT(outcome.errors, HasSubstr("See tavrel help")) << testing::PrintToString(arguments);
  }
}

TEST_F(CommandLine, HelpIsDataAndShowsExamples) {
  for (const std::string flag : {"--help", "-h"}) {
    const Outcome outcome = Run({flag});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    for (const char* part : {"Examples:", "tavrel songs --all --json", "--home DIR",
                             "--library PATH", "playlists", "Exit codes:"}) {
      EXPECT_THAT(outcome.output, HasSubstr(part));
    }
    for (const std::string& line : Lines(outcome.output)) EXPECT_LE(line.size(), 80u) << line;
  }
  EXPECT_THAT(Run({"songs", "--help"}).output, HasSubstr("LIST"));
}

TEST_F(CommandLine, VersionIsThatOfTheHeader) {
  const Outcome outcome = Run({"--version"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.output, "tavrel " TAVREL_VERSION "\n");
}

TEST_F(CommandLine, GlobalOptionsStandBeforeOrBehindTheSubcommand) {
  const std::string file = WritePlaylist("Evening");
  const Outcome before = Run({"--json", "--library", file, "songs", "Evening"});
  EXPECT_EQ(before.exitCode, 0) << before.errors;
  EXPECT_THAT(before.output, HasSubstr("\"name\":\"Nimrod\""));
  EXPECT_EQ(Run({"songs", "Evening", "--library", file, "--json"}).output, before.output);
  EXPECT_EQ(Run({"songs", "--json", "Evening", "--library=" + file}).output, before.output);
}

TEST_F(CommandLine, APlaylistMayBeNamedLikeAnything) {
  for (const std::string name : {"songs", "playlists", "[Mix]", "a,b", "%", "50% off; really?",
                                 "=x", "{1}", "交響曲", "two  blanks"}) {
    const std::string file = WritePlaylist(name);
    const Outcome outcome = Run({"--library", file, "songs", name});
    EXPECT_EQ(outcome.exitCode, 0) << name << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("Nimrod")) << name;
  }
  const std::string file = WritePlaylist("--all");
  EXPECT_THAT(Run({"--library", file, "songs", "--", "--all"}).output, HasSubstr("Nimrod"));
}

#if !TAVREL_SANITIZED  // whose address space must not be limited
TEST_F(CommandLine, OutOfMemoryIsAMessage) {
  std::vector<TrackText> tracks;
  for (int id = 1; id <= 20000; ++id)
    tracks.push_back({id, Property("Name", std::string(500, 'x'))});
  const std::string file = Write("library.xml", LibraryText(tracks));
  int failures = 0;
  // In steps of 2 MB in scripts/soak.
  for (rlim_t megabytes = 16; megabytes <= 128; megabytes += IsSoaking() ? 2u : 8u) {
    Command command;
    command.addressSpace = megabytes << 20;
    const Outcome outcome = Run({"--library", file, "songs", "--all"}, command);
    EXPECT_EQ(outcome.signal, 0) << megabytes;
    if (outcome.exitCode == 0 || outcome.exitCode == 127) continue;
    ++failures;
    EXPECT_NE(outcome.errors, "") << megabytes;
  }
  EXPECT_GT(failures, 0);
  EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
}
#endif

}  // namespace
}  // namespace tavrel::test
