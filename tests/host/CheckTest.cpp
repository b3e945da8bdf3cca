// tavrel check: what is missing, twice, of no song, or odd.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string SongAt(const std::string& name, const std::string& location) {
  return Property("Name", name) + Property("Artist", "Band") + Property("Album", "Hits") +
         Property("Location", location);
}

class Check : public HostTest {
 protected:
  // A library file beside which the folder "Music" lies, as that of an old machine.
  std::string WriteLibrary(const std::vector<std::string>& songs,
                           const std::vector<PlaylistText>& lists = {}) {
    std::vector<TrackText> tracks;
    for (const std::string& song : songs) {
      tracks.push_back({static_cast<int>(tracks.size()) + 1, song});
    }
    std::string text = LibraryText(tracks, lists);
    text.insert(text.find("<key>Tracks"), Property("Music Folder", "file:///old/Music/"));
    library_ = Write("copy/Library.xml", text);
    return text;
  }

  Outcome RunCheck(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"-l", library_, "check"});
    return Run(arguments);
  }
  Json JsonOf(std::vector<std::string> arguments = {}) const {
    arguments.push_back("--json");
    return Json::Parse(RunCheck(arguments).output);
  }
  // The counts of the summary, by what they count.
  std::string Summary() const { return RunCheck({}).output; }

  std::string library_;
};

std::vector<std::string> PartedByNul(std::string text) {
  EXPECT_TRUE(text.empty() || text.back() == '\0');
  std::replace(text.begin(), text.end(), '\0', '\n');
  return Lines(text);
}

TEST_F(Check, CountsFirstAndSaysWhereMoreIs) {
  Write("copy/Music/a.mp3", "x");
  Write("copy/Music/B.mp3", "x");
  WriteLibrary({SongAt("A", "file:///old/Music/a.mp3"), SongAt("B", "file:///old/Music/b.mp3"),
                SongAt("C", "file:///old/Music/c.mp3"), Property("Track Type", "Remote"),
                Property("Name", "nowhere")});
  const Outcome outcome = RunCheck({});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.output, HasSubstr("2  files found below " + Path("copy/Music")));
  const std::string more = "tavrel -l " + library_ + " check --only ";
  EXPECT_THAT(Lines(outcome.output)[0], testing::StartsWith("Count  What"));
  EXPECT_THAT(outcome.output, testing::ContainsRegex("1  of them spelled [^\n]*" + more + "resp"));
  EXPECT_THAT(outcome.output, testing::ContainsRegex("1  files missing *" + more + "missing\n"));
  EXPECT_THAT(outcome.output, HasSubstr("1  songs that lie elsewhere"));
  EXPECT_THAT(outcome.output, HasSubstr("1  songs without a place"));
  EXPECT_THAT(outcome.output, HasSubstr("first that is missing: " + Path("copy/Music/c.mp3")));
  EXPECT_THAT(outcome.output,
              HasSubstr("tavrel -l " + library_ + " check --music DIR, or --map /old/Music=DIR\n"));
  EXPECT_THAT(outcome.output, Not(HasSubstr("duplicates")));
}

TEST_F(Check, FailsForWhatIsMissingOrUnreadableOnly) {
  Write("copy/Music/A.mp3", "x");
  Write("copy/Music/orphan.mp3", "x");
  WriteLibrary({SongAt("A", "file:///old/Music/a.mp3"), SongAt("A", "file:///old/Music/a.mp3"),
                Property("Year", "MM")});
  for (const std::string part : {"", "missing", "respelled", "duplicates", "orphans", "file"}) {
    const Outcome outcome = part.empty() ? RunCheck({}) : RunCheck({"--only", part});
    EXPECT_EQ(outcome.exitCode, 0) << part;
  }
  fs::remove(Path("copy/Music/A.mp3"));
  EXPECT_EQ(RunCheck({}).exitCode, 1);
  EXPECT_EQ(RunCheck({"--only", "missing"}).exitCode, 1);
  EXPECT_EQ(RunCheck({"--only", "respelled"}).exitCode, 0);
}

TEST_F(Check, ListsWhatIsMissing) {
  WriteLibrary({SongAt("A", "file:///old/Music/a%0Ab.mp3"), SongAt("B", "file:///%zz")});
  const Outcome list = RunCheck({"--only", "missing"});
  ASSERT_EQ(Lines(list.output).size(), 3u);
  EXPECT_THAT(Lines(list.output)[1], testing::EndsWith("/old/Music/a b.mp3"));
  EXPECT_THAT(Lines(list.output)[2], testing::EndsWith("file:///%zz"));
  EXPECT_THAT(list.errors, HasSubstr("none of 2 files found; --music DIR or --map OLD=NEW says"));
  EXPECT_THAT(RunCheck({"--only", "missing", "-q"}).errors, IsEmpty());
  EXPECT_EQ(RunCheck({"--only", "missing", "-0"}).output, std::string("/old/Music/a\nb.mp3\0", 19));
  const Json songs = JsonOf({"--only", "missing"});
  ASSERT_EQ(songs.size(), 2u);
  EXPECT_EQ(songs[0]["name"], "A");
  EXPECT_EQ(songs[0]["status"], "missing");
  EXPECT_EQ(songs[0]["sought"], "/old/Music/a\nb.mp3");
  EXPECT_TRUE(songs[1]["sought"].IsNull());
}

TEST_F(Check, SaysInOneLineWhereMostFilesAre) {
  Write("copy/Music/a.mp3", "x");
  const auto elsewhere = [this](const std::string& name) {
    return SongAt(name, "file://" + Write("other/" + name + ".mp3", "x"));
  };
  std::vector<std::string> songs{SongAt("A", "file:///old/Music/a.mp3"), elsewhere("B")};
  const auto line = [&] {
    WriteLibrary(songs);
    return Lines(RunCheck({"--only", "missing"}).errors)[0];
  };
  const std::string folder = Path("copy/Music");
  EXPECT_EQ(line(), "tavrel: 2 of 2 files found below " + folder + ", 1 of them elsewhere");
  songs.push_back(elsewhere("C"));
  EXPECT_EQ(line(), "tavrel: 3 of 3 files found, 1 of them below " + folder);
  songs.erase(songs.begin());
  EXPECT_EQ(line(), "tavrel: 2 of 2 files found");
}

TEST_F(Check, ListsWhatIsSpelledOtherwise) {
  const std::string here = Write("copy/Music/A.mp3", "x");
  WriteLibrary({SongAt("A", "file:///old/Music/a.mp3")});
  const Outcome list = RunCheck({"--only", "respelled"});
  EXPECT_THAT(Lines(list.output)[1], testing::ContainsRegex("^/old/Music/a.mp3 +" + here));
  EXPECT_THAT(list.errors,
              HasSubstr("1 of 1 file found below " + Path("copy/Music") + ", 1 spelled otherwise"));
  EXPECT_THAT(PartedByNul(RunCheck({"--only", "respelled", "-0"}).output), ElementsAre(here));
  EXPECT_EQ(JsonOf({"--only", "respelled"})[0]["path"], here);
}

TEST_F(Check, FindsSongsThatAreThereTwice) {
  const auto timed = [](const std::string& name, int time, const std::string& file) {
    return SongAt(name, "file:///old/Music/" + file) + Number("Total Time", time);
  };
  const std::string same = Write("copy/Music/same.mp3", "x");
  WriteLibrary({timed("Caf\u00E9", 1000, "1.mp3"), timed("CAFE\u0301", 3000, "2.mp3"),
                timed("caf\u00E9", 5001, "3.mp3"), timed("cafe", 1000, "4.mp3"),
                timed("One", 1, "same.mp3"), timed("Other", 9999, "SAME.mp3"),
                Property("Album", "Hits"), Property("Album", "Hits")});
  const Json groups = JsonOf({"--only", "duplicates"});
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0]["oneFile"], false);
  ASSERT_EQ(groups[0]["songs"].size(), 2u);
  EXPECT_EQ(groups[0]["songs"][1]["seconds"].Number(), 3);
  EXPECT_EQ(groups[1]["oneFile"], true);
  EXPECT_EQ(groups[1]["songs"][1]["name"], "Other");
  EXPECT_THAT(RunCheck({"--only", "duplicates"}).output, HasSubstr("2  One "));
  EXPECT_THAT(PartedByNul(RunCheck({"--only", "duplicates", "-0"}).output),
              ElementsAre(Path("copy/Music/1.mp3"), Path("copy/Music/2.mp3"), same));
  EXPECT_THAT(Summary(), HasSubstr("2  songs that are there once more"));
}

TEST_F(Check, TakesNoLengthsForOneThatLieAllNumbersApart) {
  const auto timed = [](long long time) {
    return Property("Name", "A") + Number("Total Time", time);
  };
  WriteLibrary({timed(std::numeric_limits<std::int64_t>::min()),
                timed(std::numeric_limits<std::int64_t>::max())});
  EXPECT_TRUE(JsonOf({"--only", "duplicates"}).empty());
}

TEST_F(Check, FindsFilesThatNoSongNames) {
  Write("copy/Music/a/1.mp3", "x");
  const std::string first = Write("copy/Music/a/\n.mp3", "x");
  const std::string second = Write("copy/Music/b/c/2.mp3", "x");
  for (const std::string name : {".DS_Store", "a/._1.mp3", "a/Thumbs.db", "a/cover.jpg", ".x/y"}) {
    Write("copy/Music/" + name, "x");
  }
  const std::string other = Write("linked/3.mp3", "x");
  fs::create_symlink(other, Path("copy/Music/3.mp3"));
  fs::create_directory_symlink(Path("linked"), Path("copy/Music/folder"));
  fs::create_hard_link(Path("copy/Music/a/1.mp3"), Path("copy/Music/a/again.mp3"));
  WriteLibrary({SongAt("1", "file:///old/Music/a/1.mp3"), SongAt("3", "file://" + other)});
  const Json orphans = JsonOf({"--only", "orphans"});
  ASSERT_EQ(orphans.size(), 2u);
  EXPECT_EQ(orphans[0], first);
  EXPECT_EQ(orphans[1], second);
  const Outcome list = RunCheck({"--only", "orphans"});
  EXPECT_THAT(Lines(list.output), ElementsAre(Path("copy/Music/a/ .mp3"), second));
  EXPECT_EQ(RunCheck({"--only", "orphans", "-0"}).output,
            first + std::string(1, '\0') + second + std::string(1, '\0'));
}

TEST_F(Check, FindsFilesThatNoSongNamesWhereNoneIsFound) {
  const std::string file = Write("copy/Music/x.mp3", "x");
  WriteLibrary({SongAt("1", "file:///old/Music/1.mp3")});
  EXPECT_THAT(PartedByNul(RunCheck({"--only", "orphans", "-0"}).output), ElementsAre(file));
}

TEST_F(Check, SaysWhereItCannotLook) {
  Write("copy/Music/x.mp3", "x");
  WriteLibrary({SongAt("1", "file:///old/Music/x.mp3")});
  Command command;
  command.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS},
                         {"FAULT_KIND", "list"},
                         {"FAULT_NUMBER", "0"},
                         {"FAULT_AFTER", "1"}};
  EXPECT_THAT(Run({"-l", library_, "check"}, command).errors,
              testing::ContainsRegex("^tavrel: cannot list /[^\n]*, and [1-9] other folders: what "
                                     "no song names is not seen there\n"));
  EXPECT_EQ(Run({"-l", library_, "check", "-q"}, command).errors, "");
  EXPECT_EQ(RunCheck({}).errors, "") << "when it can";
}

TEST_F(Check, FindsCoversThatAreMissingOrUnreadable) {
  const std::string sample = TAVREL_SAMPLE_HOME "/Music/iTunes/iTunes Music Library.xml";
  library_ = sample;
  const Json covers = JsonOf({"--only", "covers"});
  EXPECT_EQ(covers["cache"], true);
  EXPECT_GT(covers["without"].size(), 0u);
  EXPECT_GT(covers["unreadable"].size(), 0u);
  EXPECT_EQ(RunCheck({"--only", "covers"}).exitCode, 1);
  EXPECT_THAT(PartedByNul(RunCheck({"--only", "covers", "-0"}).output),
              testing::SizeIs(covers["unreadable"].size()));
  WriteLibrary({SongAt("1", "file:///1")});
  EXPECT_EQ(JsonOf({"--only", "covers"})["cache"], false);
  EXPECT_EQ(RunCheck({"--only", "covers"}).exitCode, 0);
}

TEST_F(Check, FindsWhatIsOddAboutTheFile) {
  const auto persistent = [](const std::string& id) { return Property("Persistent ID", id); };
  const std::string text =
      LibraryText({{5, persistent("A")},
                   {3, persistent("B") + Property("Name", "a &bad; b")},
                   {3, persistent("B") + Property("Year", "1999") + Number("Name", 7)},
                   {9, Property("Year", "x")}},
                  {{Property("Name", "List"), {5, 9}}});
  library_ = Write("odd.xml", text);
  const Json file = JsonOf({"--only", "file"});
  EXPECT_EQ(file["whole"], true);
  std::vector<std::string> told;
  for (const Json& finding : file["findings"].Values()) {
    told.push_back(finding["finding"].Text() + " " +
                   std::to_string(static_cast<int>(finding["count"].Number())));
  }
  EXPECT_THAT(told, ElementsAre("idTwice 1", "idOutOfOrder 1", "persistentIdTwice 1",
                                "brokenText 1", "oddType 1", "oddType 2", "inNoList 3"));
  EXPECT_EQ(file["findings"][1]["ids"][0], "B");
  const Outcome list = RunCheck({"--only", "file"});
  EXPECT_EQ(list.exitCode, 0);
  EXPECT_THAT(list.output, HasSubstr("2  Year is written as string"));
  EXPECT_THAT(list.errors, IsEmpty());
}

TEST_F(Check, TellsAFileThatIsCutOff) {
  const std::string text = WriteLibrary({SongAt("1", "file:///old/1")});
  library_ = Write("cut.xml", text.substr(0, text.find("<key>Playlists")));
  EXPECT_EQ(JsonOf({"--only", "file"})["whole"], false);
  const Outcome outcome = RunCheck({"--only", "file"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.output, HasSubstr("cut off"));
}

TEST_F(Check, SaysAllOfItAsOneObject) {
  WriteLibrary({SongAt("A", "file:///old/Music/a.mp3")});
  const Json all = JsonOf();
  EXPECT_THAT(all.Names(), ElementsAre("songs", "missing", "respelled", "duplicates", "orphans",
                                       "covers", "file"));
  EXPECT_EQ(all["songs"]["missing"].Number(), 1);
  EXPECT_EQ(all["missing"][0]["name"], "A");
}

TEST_F(Check, SaysThatThereIsNothingToSay) {
  Write("copy/Music/a.mp3", "x");
  WriteLibrary({SongAt("A", "file:///old/Music/a.mp3")});
  for (const std::string part :
       {"missing", "respelled", "duplicates", "orphans", "covers", "file"}) {
    const Outcome outcome = RunCheck({"--only", part});
    EXPECT_EQ(outcome.exitCode, 0) << part;
    EXPECT_EQ(outcome.output, "") << part;
    EXPECT_THAT(Lines(outcome.errors).back(), testing::ContainsRegex("tavrel: (no|every|nothing) "))
        << part;
  }
}

TEST_F(Check, TakesPathsOfAPartAlone) {
  WriteLibrary({});
  EXPECT_EQ(RunCheck({"-0"}).exitCode, 2);
  EXPECT_EQ(RunCheck({"--only", "file", "-0"}).exitCode, 2);
  EXPECT_EQ(RunCheck({"--only", "lost"}).exitCode, 2);
  EXPECT_EQ(RunCheck({"--paths", "nfc"}).exitCode, 2) << "who checks looks at the disk";
}

}  // namespace
}  // namespace tavrel::test
