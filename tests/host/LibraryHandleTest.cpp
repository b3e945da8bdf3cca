#include <gmock/gmock.h>

#include <filesystem>

#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

constexpr const char* kBelowHome = "/Music/iTunes/iTunes Music Library.xml";

class LibraryHandle : public HostTest {
 protected:
  // Copies the program to bin/, so that the run path leads to lib/ beside it; a link would not do.
  std::string Install(const std::string& library, const std::string& libraryFolder = "lib") const {
    fs::create_directories(Path("bin"));
    fs::create_directories(Path(libraryFolder));
    fs::copy_file(TAVREL_HOST_PROGRAM, Path("bin/tavrel"), fs::copy_options::skip_existing);
    if (!library.empty()) {
      fs::create_symlink(library, Path(libraryFolder) + "/" TAVREL_LIBRARY_NAME);
    }
    return Path("bin/tavrel");
  }

  Outcome RunStandIn(const std::vector<std::string>& arguments, Command command = {}) const {
    command.environment["STANDIN_LOG"] = Path("log");
    return RunProgram(CommandFor(Install(TAVREL_STANDIN), arguments, std::move(command)));
  }

  std::vector<std::string> Log() const { return Lines(FileBytes(Path("log"))); }

  // The song that the library of the given home folder holds.
  void ExpectReadable(const std::string& home) const {
    Write(home + kBelowHome, LibraryWithName("Nimrod"));
    const Outcome byHome = Run({"--home", Path(home), "songs", "--all"});
    EXPECT_EQ(byHome.exitCode, 0) << byHome.errors;
    EXPECT_THAT(byHome.output, HasSubstr("Nimrod")) << home;
    const Outcome byFile = Run({"--library", Path(home) + kBelowHome, "songs", "--all"});
    EXPECT_EQ(byFile.exitCode, 0) << byFile.errors;
    EXPECT_THAT(byFile.output, HasSubstr("Nimrod")) << home;
  }
};

TEST_F(LibraryHandle, TheHomeVariableIsPutBackRightAfterTheLoad) {
  const Outcome outcome = RunStandIn({"--home", Path("chosen")});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(Log(), IsSupersetOf({"load " + Path("chosen"), "call " + Path("empty home")}));
}

TEST_F(LibraryHandle, AHomeVariableThatWasNotSetIsNotSetAfterwards) {
  Command command;
  command.environment["HOME"] = std::nullopt;
  const Outcome outcome = RunStandIn({"--home", Path("chosen")}, command);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(Log(), IsSupersetOf({"load " + Path("chosen"), "call (none)"s}));
}

TEST_F(LibraryHandle, WithoutOptionsTheHomeVariableIsLeftAlone) {
  RunStandIn({});
  EXPECT_THAT(Log(), IsSupersetOf({"load " + Path("empty home"), "call " + Path("empty home")}));
}

TEST_F(LibraryHandle, ARelativeHomeIsMadeAbsolute) {
  Command command;
  command.folder = Path("empty home");
  RunStandIn({"--home", "../chosen"}, command);
  EXPECT_THAT(Log(), IsSupersetOf({"load " + Path("empty home") + "/../chosen"}));
}

TEST_F(LibraryHandle, ALibraryFileIsReadThroughAHomeOfLinks) {
  const std::string file = Write("export/My Library.xml", "</plist>");
  fs::create_directories(Path("export/Album Artwork"));
  fs::create_directories(Path("export/iTunes Media"));
  Command command;
  command.folder = Path("export");
  const Outcome outcome = RunStandIn({"--library", "My Library.xml"}, command);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  const std::vector<std::string> log = Log();
  EXPECT_THAT(log, IsSupersetOf({"mode 448"s,  // 0700
                                 "iTunes Music Library.xml -> " + file,
                                 "Album Artwork -> " + Path("export/Album Artwork"),
                                 "iTunes Media -> " + Path("export/iTunes Media")}));
  EXPECT_THAT(log.front(), testing::StartsWith("load " + Path("temporary") + "/tavrel-"));
  EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
}

TEST_F(LibraryHandle, NeighboursThatDoNotExistGetNoLink) {
  const std::string file = Write("export/library.xml", "</plist>");
  fs::create_symlink("nowhere", Path("export/iTunes Media"));
  RunStandIn({"--library", file});
  EXPECT_THAT(Log(), Not(testing::Contains(HasSubstr("Media"))));
  EXPECT_THAT(Log(), Not(testing::Contains(HasSubstr("Artwork"))));
}

// Anybody may have dropped a file into the folder that the program lies in.
TEST_F(LibraryHandle, ALibraryBesideTheProgramIsNotTaken) {
  Command command;
  command.environment["STANDIN_LOG"] = Path("log");
  const std::string program = Install(TAVREL_STANDIN, "bin");
  const Outcome outcome = RunProgram(CommandFor(program, {}, command));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot open the Tavrel library"));
  EXPECT_TRUE(Log().empty());
}

TEST_F(LibraryHandle, AMissingLibraryIsAMessage) {
  const Outcome outcome = RunProgram(CommandFor(Install(""), {}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, AllOf(HasSubstr("tavrel: cannot open the Tavrel library"),
                                    HasSubstr(TAVREL_LIBRARY_NAME)));
}

TEST_F(LibraryHandle, ALibraryThatLacksAFunctionIsAMessage) {
  const std::string program = Install(TAVREL_INCOMPLETE_STANDIN);
  const Outcome outcome = RunProgram(CommandFor(program, {}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, AllOf(HasSubstr("does not fit"), HasSubstr("OpenAllSongs")));
}

TEST_F(LibraryHandle, ASizeWithoutATextIsAMissingText) {
  const Outcome outcome = RunStandIn({"songs", "--all", "--json"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  const std::vector<std::string> lines = Lines(outcome.output);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_THAT(lines[1],
              HasSubstr(R"("name":"firstly","artist":null,"albumArtist":null,"album":"")"));
  EXPECT_THAT(lines[2],
              HasSubstr(R"("name":"second","artist":null,"albumArtist":null,"album":"")"));
}

TEST_F(LibraryHandle, AnyPathReachesTheLibrary) {
  for (const std::string home : {"with blanks", "50%", "%41", "#1", "what?", "a;b", "a&b", "Dvořák",
                                 "交響曲", "caf\xE9", "a\nb", "\"quoted\"", "back\\slash", "-x"}) {
    ExpectReadable(home);
  }
}

TEST_F(LibraryHandle, TheHomeFolderMayBeALink) {
  Write(std::string("real") + kBelowHome, LibraryWithName("Nimrod"));
  fs::create_symlink(Path("real"), Path("link"));
  EXPECT_EQ(Run({"--home", Path("link")}).exitCode, 0);
  EXPECT_EQ(Run({"--home", Path("real/")}).exitCode, 0);
}

}  // namespace
}  // namespace tavrel::test
