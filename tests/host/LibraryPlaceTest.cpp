#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kStandardFile = "Music/iTunes/iTunes Music Library.xml";

class LibraryPlace : public HostTest {
 protected:
  // Runs a script in this test's folder, where $tavrel is the program.
  Outcome Shell(const std::string& script) const {
    Command command;
    command.folder = Path("");
    command.environment["tavrel"] = TAVREL_HOST_PROGRAM;
    return RunProgram(CommandFor("/bin/sh", {"-c", script}, command));
  }

  Outcome Songs(const std::string& library) const { return Run({"-l", library, "songs", "--all"}); }

  void ExpectSong(const std::string& library, const std::string& name) const {
    const Outcome outcome = Songs(library);
    EXPECT_EQ(outcome.exitCode, 0) << library << ": " << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr(name)) << library;
    EXPECT_EQ(outcome.errors, "") << library;
    EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
  }

  static void SetAge(const std::string& file, int hours) {
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(hours));
  }
};

TEST_F(LibraryPlace, AFolderIsLookedIntoAsTunesAndMusicFillIt) {
  int number = 0;
  for (const char* place :
       {"", "iTunes/", "Music/", "Music/iTunes/", "Music/Music/", "My Music/iTunes/"}) {
    for (const char* file : {"iTunes Music Library.xml", "iTunes Library.xml", "Library.xml"}) {
      const std::string home = "home " + std::to_string(++number);
      const std::string song = "Variation " + std::to_string(number);
      Write(home + "/" + place + file, LibraryWithName(song));
      ExpectSong(Path(home), song);
    }
  }
}

TEST_F(LibraryPlace, OfSeveralFilesTheNewestIsReadAndItSaysSo) {
  const std::string older = Write("home/" + std::string(kStandardFile), LibraryWithName("Old"));
  const std::string newer = Write("home/Music/Music/Library.xml", LibraryWithName("New"));
  SetAge(older, 2);
  SetAge(newer, 1);
  const Outcome outcome = Songs(Path("home"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.output, HasSubstr("New"));
  EXPECT_EQ(outcome.errors, "tavrel: there are 2 library files; the newest is read: " + newer +
                                "\n  older: " + older + "\n");
  EXPECT_EQ(Run({"-q", "-l", Path("home"), "songs", "--all"}).errors, "");
  SetAge(older, 0);
  EXPECT_THAT(Songs(Path("home")).output, HasSubstr("Old"));
}

TEST_F(LibraryPlace, AFileUnderTwoNamesIsOneFile) {
  Write("home/Library.xml", LibraryWithName("Nimrod"));
  fs::create_symlink("Library.xml", Path("home/iTunes Library.xml"));
  ExpectSong(Path("home"), "Nimrod");
}

TEST_F(LibraryPlace, AFolderWithoutALibraryFileSaysWhereNearItOneIs) {
  const auto near = [this](const std::string& folder) {
    const Outcome outcome = Songs(folder);
    EXPECT_EQ(outcome.exitCode, 3);
    return outcome.errors.substr(outcome.errors.find('\n') + 1);
  };
  const std::string line = "    tavrel -l " + Path("disk/Users/");
  Write("disk/Users/me/Music/iTunes/iTunes Music Library.xml", LibraryWithName("Nimrod"));
  fs::create_directories(Path("disk/Users/me/Music/iTunes/iTunes Media/Music"));
  EXPECT_EQ(near(Path("disk")), "  But this has one:\n" + line + "me\n");
  const std::string above = "  But this has one:\n" + line + "me/Music/iTunes\n";
  EXPECT_EQ(near(Path("disk/Users/me/Music/iTunes/iTunes Media/Music")), above);
  fs::create_directory_symlink(Path("disk/Users/me"), Path("disk/Users/link"));
  Write("disk/Users/you/Library.xml", LibraryWithName("Vltava"));
  Write("disk/.hidden/Library.xml", LibraryWithName("Vltava"));
  Write("disk/1/2/3/4/Library.xml", LibraryWithName("too deep"));
  EXPECT_EQ(near(Path("disk")), "  But these have one:\n" + line + "me\n" + line + "you\n");
  EXPECT_THAT(near(Path("disk/1")),
              HasSubstr("  But this has one:\n    tavrel -l " + Path("disk/1/2/3/4") + "\n"));
}

TEST_F(LibraryPlace, AFolderWithoutALibraryFileSaysWhatItHolds) {
  fs::create_directories(Path("home/Music/iTunes"));
  EXPECT_THAT(Songs(Path("home/Music/iTunes")).errors, HasSubstr("It is empty"));
  EXPECT_EQ(Songs(Path("home")).exitCode, 3);
  EXPECT_THAT(Songs(Path("home")).errors,
              AllOf(HasSubstr("there is no iTunes library file in " + Path("home") + "\n"),
                    HasSubstr("It holds 1 entry: Music."), HasSubstr("Export Library")));
  Write("home/Music/iTunes/iTunes Library.itl", "hdfm");
  EXPECT_THAT(
      Songs(Path("home")).errors,
      HasSubstr("There is " + Path("home/Music/iTunes/iTunes Library.itl") + ", a database"));
  Write("home/Music/my export.xml", LibraryWithName("Nimrod"));
  EXPECT_THAT(Songs(Path("home")).errors,
              HasSubstr("\n    tavrel -l '" + Path("home/Music/my export.xml") + "'\n"));
}

TEST_F(LibraryPlace, TheHomeOptionReadsTheOneFileAndNamesOthers) {
  Write("home/Music/Music/Library.xml", LibraryWithName("Nimrod"));
  const Outcome outcome = Run({"--home", Path("home")});
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.errors, HasSubstr("\n    tavrel -l " + Path("home") + "\n"));
}

TEST_F(LibraryPlace, WithoutOptionsOtherFilesOfTheHomeFolderAreFound) {
  Write("empty home/Music/Music/Library.xml", LibraryWithName("Nimrod"));
  EXPECT_THAT(Run({"songs", "--all"}).output, HasSubstr("Nimrod"));
  SetAge(Write("empty home/" + std::string(kStandardFile), LibraryWithName("Canon")), 5);
  const Outcome outcome = Run({"songs", "--all"});
  EXPECT_THAT(outcome.output, HasSubstr("Canon")) << "which hosts of the library read, too";
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(LibraryPlace, TheEnvironmentStandsForTheOptionWhereNoneIsGiven) {
  Command command;
  command.environment["TAVREL_LIBRARY"] = Write("a.xml", LibraryWithName("Nimrod"));
  EXPECT_THAT(Run({"songs", "--all"}, command).output, HasSubstr("Nimrod"));
  const std::string other = Write("b.xml", LibraryWithName("Canon"));
  EXPECT_THAT(Run({"-l", other, "songs", "--all"}, command).output, HasSubstr("Canon"));
  Write("home/" + std::string(kStandardFile), LibraryWithName("Jupiter"));
  EXPECT_THAT(Run({"--home", Path("home"), "songs", "--all"}, command).output,
              HasSubstr("Jupiter"));
  command.environment["TAVREL_LIBRARY"] = "";
  EXPECT_EQ(Run({"songs", "--all"}, command).exitCode, 3);
}

TEST_F(LibraryPlace, CompressedFilesAndStandardInputAreRead) {
  Write("library.xml", LibraryWithName("Nimrod"));
  Write("part.xml", LibraryWithName("Nimrod").substr(0, 50));
  Write("rest.xml", LibraryWithName("Nimrod").substr(50));
  const Outcome outcome = Shell(
      "set -e; gzip -k library.xml part.xml rest.xml; cp library.xml.gz anything\n"
      "cat part.xml.gz rest.xml.gz > members.gz; (cat members.gz; echo behind) > behind.gz\n"
      "for file in library.xml.gz anything members.gz behind.gz; do\n"
      "  $tavrel -l $file songs --all; $tavrel -l - songs --all < $file\n"
      "done; cat library.xml | $tavrel songs --all -l -");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  std::size_t found = 0;
  for (const std::string& line : Lines(outcome.output)) {
    if (line.find("Nimrod") != std::string::npos) ++found;
  }
  EXPECT_EQ(found, 9u);
  EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
}

TEST_F(LibraryPlace, CompressedDataOfAnyLengthAreInflatedWhole) {
  // Longer than any piece that is inflated at a time, by every remainder of a few.
  for (const int length : {1 << 18, (1 << 19) - 1, (1 << 19) + 1, 3 << 18}) {
    const std::string name(static_cast<std::size_t>(length), 'x');
    Write("long.xml", LibraryWithName(name));
    const Outcome outcome =
        Shell("gzip -kf long.xml; $tavrel -l long.xml.gz songs --all --json | grep -c '\"x*\"'");
    EXPECT_EQ(outcome.output, "1\n") << length << outcome.errors;
  }
}

TEST_F(LibraryPlace, DamagedAndCutOffCompressedDataAreTold) {
  Write("library.xml", LibraryText(std::vector<TrackText>(
                           2000, {1, Property("Name", "Nimrod") + Property("Artist", "Elgar")})));
  const Outcome cut = Shell(
      "gzip -k library.xml; head -c 1000 library.xml.gz > cut.gz; $tavrel -l cut.gz songs --all");
  EXPECT_EQ(cut.exitCode, 1);
  EXPECT_THAT(cut.errors, HasSubstr("cut.gz is cut off: "));
  EXPECT_THAT(cut.output, HasSubstr("Nimrod"));
  const Outcome damaged = Shell(
      "(head -c -8 library.xml.gz; printf '\\1\\2\\3\\4\\5\\6\\7\\10') > bad.gz; $tavrel -l "
      "bad.gz");
  EXPECT_EQ(damaged.exitCode, 4) << damaged.errors;
  EXPECT_THAT(damaged.errors, HasSubstr("It is compressed, and damaged"));
  EXPECT_EQ(Shell("gzip -c library.xml.gz | $tavrel -l -").exitCode, 4) << "compressed twice";
  EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
}

TEST_F(LibraryPlace, ANearbyNameIsSuggestedAsACommand) {
  Write("iTunes Library (old).xml", "");
  Write("Library 2019.xml", "");
  Write("unrelated", "");
  const Outcome outcome = Run({"-l", Path("Libary 2019.xml")});
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.errors,
              AllOf(HasSubstr("\n    tavrel -l '" + Path("Library 2019.xml") + "'\n"),
                    Not(HasSubstr("unrelated"))));
}

TEST_F(LibraryPlace, AFileThatIsCutOffIsShownAndExitCode1) {
  std::vector<TrackText> tracks;
  for (int id = 1; id <= 54; ++id) tracks.push_back({id, Property("Name", "Song")});
  const std::string text = LibraryText(tracks);
  const std::string cut = Write("cut.xml", text.substr(0, text.find("</dict>\n<key>Playlists")));
  const Outcome outcome = Songs(cut);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(Lines(outcome.output).size(), 55u);
  EXPECT_THAT(outcome.errors,
              testing::StartsWith("tavrel: " + cut + " is cut off: 54 songs read\n"));
  for (const char* end : {"", "\n", " \r\n\t", "\n<!-- by hand -->\n"}) {
    EXPECT_EQ(Songs(Write("whole.xml", text.substr(0, text.size() - 1) + end)).errors, "") << end;
  }
  for (const std::size_t missing : {2u, 3u, 9u}) {
    EXPECT_EQ(Songs(Write("cut.xml", text.substr(0, text.size() - missing))).exitCode, 1);
  }
}

TEST_F(LibraryPlace, LogLinesOfTheLibraryShowWithVerboseOnly) {
  const std::string file = Write("library.xml", LibraryWithName("Nim &rod"));
  EXPECT_EQ(Songs(file).errors, "");
  EXPECT_THAT(Run({"-v", "-l", file, "songs", "--all"}).errors, HasSubstr("Nim &rod"));
  EXPECT_THAT(Run({"songs", "--all", "-l", file, "--verbose"}).errors, HasSubstr("Nim &rod"));
}

}  // namespace
}  // namespace tavrel::test
