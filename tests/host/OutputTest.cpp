#include <gmock/gmock.h>

#include <filesystem>

#include "host/output/NewFile.h"
#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Output : public HostTest {
 protected:
  // A library whose songs fill more than any buffer in between.
  std::string WriteLargeLibrary() const {
    std::vector<TrackText> tracks;
    for (int id = 1; id <= 5000; ++id) {
      tracks.push_back({id, Property("Name", "Variation " + std::to_string(id))});
    }
    return Write("library.xml", LibraryText(tracks));
  }
};

TEST_F(Output, AReaderThatHasGoneAwayIsAnErrorWithoutAWord) {
  Command command;
  command.output = Stream::BrokenPipe;
  const std::string file = WriteLargeLibrary();
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"songs", "--all"}, {"songs", "--all", "--json"}, {}}) {
    std::vector<std::string> all{"--library", file};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = Run(all, command);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.errors, "");
  }
  EXPECT_EQ(Run({"--help"}, command).exitCode, 1);
  EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
}

TEST_F(Output, AFullDiskIsAnError) {
  Command command;
  command.output = Stream::Full;
  const Outcome outcome = Run({"--library", WriteLargeLibrary(), "songs", "--all"}, command);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors,
              HasSubstr("cannot write to standard output: No space left on device"));
}

TEST_F(Output, AClosedStandardOutputIsAnError) {
  Command command;
  command.output = Stream::Closed;
  const Outcome outcome = Run({"--library", WriteLargeLibrary(), "songs", "--all"}, command);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write to standard output"));
}

TEST_F(Output, NoFileOfTheProgramTakesThePlaceOfAClosedStandardOutput) {
  Command command;
  command.output = Stream::Closed;
  command.errors = Stream::Terminal;
  fs::create_directories(Path("home/Music/iTunes"));
  fs::rename(WriteLargeLibrary(), Path("home/Music/iTunes/iTunes Music Library.xml"));
  const Outcome outcome = Run({"--home", Path("home"), "songs", "--all"}, command);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.errors, "tavrel: cannot write to standard output: Bad file descriptor\n");
}

TEST_F(Output, AClosedStandardErrorDoesNotMatter) {
  Command command;
  command.errors = Stream::Closed;
  const Outcome good = Run({"--library", WriteLargeLibrary(), "songs", "--all"}, command);
  EXPECT_EQ(good.exitCode, 0);
  EXPECT_EQ(Lines(good.output).size(), 5001u);
  const Outcome bad = Run({"songs", "--all"}, command);
  EXPECT_EQ(bad.exitCode, 3);
  EXPECT_EQ(bad.output, "");
}

TEST_F(Output, OneVeryLongNameDoesNotFillTheOtherRowsWithBlanks) {
  const std::string name(1 << 20, 'x');
  std::vector<TrackText> tracks{{1, Property("Name", name) + Property("Artist", name)}};
  for (int id = 2; id <= 200; ++id) tracks.push_back({id, Property("Name", "Nimrod")});
  const std::string file =
      Write("library.xml", LibraryText(tracks, {{Property("Name", name), {1}}}));
  const Outcome songs = Run({"--library", file, "songs", "--all"});
  EXPECT_THAT(songs.output, HasSubstr(name + "  " + name)) << "it is not cut";
  EXPECT_LT(songs.output.size(), 2 * name.size() + 100000);
  EXPECT_LT(Run({"--library", file}).output.size(), 4 * name.size());
}

TEST_F(Output, AllOfItArrives) {
  const Outcome outcome = Run({"--library", WriteLargeLibrary(), "songs", "--all"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  const std::vector<std::string> lines = Lines(outcome.output);
  ASSERT_EQ(lines.size(), 5001u);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    ASSERT_TRUE(lines[i].ends_with("  Variation " + std::to_string(i))) << lines[i];
  }
}

class MakingFolders : public HostTest {};

TEST_F(MakingFolders, MakesThoseThatAreMissing) {
  for (const std::string name : {"a", "a/b/c", "a/b/c", "g/d//", "link/e"}) {
    host::MakeFolders(Path(name));
    EXPECT_TRUE(fs::is_directory(Path(name))) << name;
    if (name == "a") fs::create_directory_symlink(Path("a"), Path("link"));
  }
  host::MakeFolders(Path("link"));
  EXPECT_TRUE(fs::is_directory(Path("a/e")));
}

TEST_F(MakingFolders, TakesNoFileForAFolder) {
  Write("file", "x");
  fs::create_symlink(Path("nowhere"), Path("link"));
  for (const std::string name : {"file", "file/a", "file/a/b", "link"}) {
    EXPECT_THROW(host::MakeFolders(Path(name)), host::WriteFailure) << name;
  }
  EXPECT_EQ(FileBytes(Path("file")), "x");
}

}  // namespace
}  // namespace tavrel::test
