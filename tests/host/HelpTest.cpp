#include <gmock/gmock.h>

#include "host/output/Text.h"
#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

using host::Width;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Help : public HostTest {
 protected:
  // What is said about a command line that is not understood.
  std::string Mistake(const std::vector<std::string>& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.output, "");
    return outcome.errors;
  }

  std::string Printed(const std::vector<std::string>& arguments, Command command = {}) const {
    const Outcome outcome = Run(arguments, std::move(command));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    return outcome.output;
  }
};

TEST_F(Help, IsTheSameByOptionAndByCommand) {
  EXPECT_EQ(Printed({"help"}), Printed({"--help"}));
  for (const char* command :
       {"songs", "search", "playlists", "ringtones", "covers", "stats", "page"}) {
    EXPECT_EQ(Printed({"help", command}), Printed({command, "--help"}));
    EXPECT_THAT(Printed({"help", command}),
                AllOf(HasSubstr("tavrel " + std::string(command)), HasSubstr("--library PATH")));
  }
  EXPECT_EQ(Printed({"help", "ringtones", "add"}), Printed({"ringtones", "add", "-h"}));
}

TEST_F(Help, ShowsExamplesFirstAndFitsTheTerminal) {
  for (const char* columns : {"60", "80", "120"}) {
    Command command;
    command.environment["COLUMNS"] = columns;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"help"}, {"help", "artwork"}, {"help", "search"}}) {
      const std::string text = Printed(arguments, command);
      EXPECT_LT(text.find("\nExamples:\n"), text.find("\nUsage:\n"));
      for (const std::string& line : Lines(text)) {
        EXPECT_LE(Width(line), static_cast<std::size_t>(std::stoi(columns))) << line;
      }
    }
  }
}

TEST_F(Help, ACommandThatIsMistypedOrGuessedIsPutRight) {
  EXPECT_THAT(Mistake({"serch", "x"}),
              HasSubstr("no command \"serch\"; do you mean:\n    tavrel search\n"));
  EXPECT_THAT(Mistake({"Playlist"}), HasSubstr("\n    tavrel playlists\n"));
  EXPECT_THAT(Mistake({"find", "x"}), HasSubstr("\n    tavrel search\n"));
  EXPECT_THAT(Mistake({"tracks"}), HasSubstr("\n    tavrel songs\n"));
  EXPECT_THAT(Mistake({"Dvořák"}), HasSubstr("\n    tavrel search Dvořák\n")) << "or a search";
  EXPECT_THAT(Mistake({"help", "sngs"}), HasSubstr("\n    tavrel help songs"));
  const std::string file = Write("my library.xml", "");
  EXPECT_THAT(Mistake({file}), HasSubstr("\n    tavrel -l '" + file + "'\n"));
}

TEST_F(Help, AnOptionThatIsMistypedOrAnothersIsPutRight) {
  EXPECT_THAT(Mistake({"search", "--artst", "x"}),
              HasSubstr("tavrel search has no option --artst; do you mean:\n    --artist\n"));
  EXPECT_THAT(Mistake({"songs", "--libary=x", "--all"}), HasSubstr("\n    --library\n"));
  EXPECT_THAT(Mistake({"playlists", "--count"}), HasSubstr("\n    tavrel search --count\n"));
  EXPECT_THAT(Mistake({"--zzzzzzzz"}), Not(HasSubstr("do you mean")));
}

TEST_F(Help, SeveralWordsWhereOneWasMeantSuggestQuotes) {
  EXPECT_THAT(Mistake({"songs", "Road", "trip", "2"}),
              HasSubstr("\n    tavrel songs 'Road trip 2'\n"));
  EXPECT_THAT(Mistake({"-l", "a b.xml", "songs", "It's", "late"}),
              HasSubstr("\n    tavrel -l 'a b.xml' songs 'It'\\''s late'\n"))
      << "with the options that were given";
}

TEST_F(Help, AnErrorNamesTheCommandWhoseHelpFits) {
  EXPECT_THAT(Mistake({"search"}), EndsWith("\n  See tavrel help search.\n"));
  EXPECT_THAT(Mistake({"ringtones", "add"}), EndsWith("\n  See tavrel help ringtones add.\n"));
  EXPECT_THAT(Mistake({"--color", "blue"}), EndsWith("\n  See tavrel help.\n"));
}

class Paging : public HostTest {
 protected:
  Outcome Songs(int count, const char* pager, std::vector<std::string> arguments = {}) const {
    std::vector<TrackText> tracks;
    for (int id = 1; id <= count; ++id) tracks.push_back({id, Property("Name", "Variation")});
    Command command;
    command.output = Stream::Terminal;  // of 24 rows
    command.environment["PAGER"] = pager;
    arguments.insert(arguments.end(),
                     {"-l", Write("library.xml", LibraryText(tracks)), "songs", "--all"});
    return Run(arguments, command);
  }
};

TEST_F(Paging, LongOutputOnATerminalGoesThroughThePager) {
  const Outcome paged = Songs(23, "sed 's/^/paged: /'");
  EXPECT_EQ(paged.exitCode, 0) << paged.errors;
  ASSERT_EQ(Lines(paged.output).size(), 24u);
  for (const std::string& line : Lines(paged.output)) EXPECT_THAT(line, StartsWith("paged: "));
  EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
}

TEST_F(Paging, OtherOutputDoesNot) {
  const char* pager = "sed 's/^/paged: /'";
  EXPECT_THAT(Songs(22, pager).output, Not(HasSubstr("paged"))) << "it is short";
  EXPECT_THAT(Songs(99, pager, {"--no-pager"}).output, Not(HasSubstr("paged")));
  for (const char* none : {"", "cat"}) {
    EXPECT_EQ(Lines(Songs(99, none).output).size(), 100u);
  }
  Command command;
  command.environment["PAGER"] = pager;
  EXPECT_THAT(Run({"help"}, command).output, Not(HasSubstr("paged"))) << "it is no terminal";
}

TEST_F(Paging, LeavingItEarlyIsNoError) {
  const Outcome outcome = Songs(20000, "head -n 1");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(Lines(outcome.output).size(), 1u);
}

}  // namespace
}  // namespace tavrel::test
