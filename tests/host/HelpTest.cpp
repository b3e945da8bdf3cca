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

TEST_F(Help, EveryCommandHasExamplesAndTheyStandFirst) {
  const std::vector<std::string> lines = Lines(Printed({"help"}));
  auto line = std::find(lines.begin(), lines.end(), "Commands:");
  ASSERT_NE(line, lines.end());
  int commands = 0;
  while (++line != lines.end() && line->starts_with("  ")) {
    if (line->at(2) == ' ') continue;  // more of what stands above
    const std::string name = line->substr(2, line->find(' ', 2) - 2);
    const std::string text = Printed({"help", name});
    ++commands;
    ASSERT_NE(text.find("\nExamples:\n"), std::string::npos) << name;
    EXPECT_LT(text.find("\nExamples:\n"), text.find("\nUsage:\n")) << name;
    EXPECT_THAT(text, HasSubstr("\n  tavrel " + name)) << name;
  }
  EXPECT_GE(commands, 8);
}

TEST_F(Help, AWrongValueIsToldInPlainWordsWhatMayStandThere) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
      {{"--color", "alway"},
       "--color: there is no \"alway\"; do you mean always?\n  It is one of: auto always never\n"},
      {{"stats", "--by", "artists"}, "--by: there is no \"artists\"; do you mean artist?\n"},
      {{"songs", "--format", "xml"},
       "--format: there is no \"xml\"\n  It is one of: table json jsonl csv tsv\n"},
      {{"songs", "--format", "CSV"}, "there is no \"CSV\"; do you mean csv?\n"},
      {{"completion", "tcsh"}, "there is no \"tcsh\"\n  It is one of: bash zsh fish\n"},
      {{"--paths", "page", "-o", "x"},
       "--paths: no value stands before the command page; do you mean:\n    tavrel page --paths\n"
       "  It is one of: auto nfc nfd raw\n"},
      {{"--color", "songs"},
       "--color: no value stands before the command songs\n  It is one of: auto always never\n"},
      {{"page", "--paths=nfc"}, "--paths takes no value\n"},
      {{"search", "x", "--limit", "-1"}, "--limit: -1 is no whole number from 1 on\n"},
      {{"search", "x", "--limit", "0x"}, "--limit: 0x is no whole number from 1 on\n"},
      {{"--library"}, "--library needs a value: --library PATH\n"},
      {{"search", "--artist"}, "--artist needs a value: --artist TEXT\n"},
      {{"-l", "a", "-l", "b"}, "--library is given 2 times\n"},
      {{"search", "--artist", "x", "--artist", "y"}, "--artist is given 2 times\n"},
  };
  for (const auto& [arguments, message] : wrong)
    EXPECT_THAT(Mistake(arguments), HasSubstr(message));
}

TEST_F(Help, WhatPeopleTryFirstIsToldWhatItIsCalled) {
  EXPECT_THAT(Mistake({"version"}), HasSubstr("\n    tavrel --version\n"));
  EXPECT_THAT(Mistake({"-l", "x", "artists"}), HasSubstr("\n    tavrel -l x stats --by artist\n"));
  EXPECT_THAT(Mistake({"songs", "--csv"}),
              HasSubstr(" no option --csv; do you mean:\n    --format csv\n"));
  EXPECT_THAT(Mistake({"search", "--title", "x"}), HasSubstr(":\n    --name\n"));
  EXPECT_THAT(Mistake({"stats", "--limit", "3"}), HasSubstr(":\n    --top\n"));
  EXPECT_THAT(Mistake({"songs", "--no-color"}), HasSubstr(":\n    --color never\n"));
  EXPECT_THAT(Mistake({"stats", "genres"}), HasSubstr("\n    tavrel stats --by genre\n"));
  EXPECT_THAT(
      Mistake({"page", "--paths", "nfc", "-o", "x"}),
      HasSubstr(" does not take \"nfc\"; do you mean:\n    tavrel --paths nfc page --paths\n"));
  EXPECT_THAT(Mistake({"-l", "x", "playlists", "Road trip"}),
              HasSubstr("\n    tavrel -l x songs 'Road trip'\n"
                        "    tavrel -l x playlists --with 'Road trip'\n"));
  EXPECT_THAT(Mistake({"-l", "x", "missing"}),
              HasSubstr("\n    tavrel -l x check --only missing\n"));
  EXPECT_THAT(Mistake({"playlist", "Evening"}),
              HasSubstr("\n    tavrel playlists\n    tavrel songs LIST\n"));
  EXPECT_THAT(Mistake({"db"}), HasSubstr("\n    tavrel export --format sqlite -o FILE\n"));
  EXPECT_THAT(Mistake({"check", "--missing"}), HasSubstr(":\n    --only missing\n"));
  EXPECT_THAT(Mistake({"songs", "--missing"}), HasSubstr(":\n    tavrel check --only missing\n"))
      << "of another command";
  EXPECT_THAT(Mistake({"search", "x", "--path"}), HasSubstr(":\n    --fields path\n"));
  EXPECT_THAT(Mistake({"copy", "A", "/media/stick"}),
              HasSubstr("copy needs a folder: -o DIR; words without an option are lists\n"));
  EXPECT_THAT(Run({"check", "--map", "E:\\Music", "/media/disk"}).errors,
              HasSubstr("--map E:\\Music: it takes OLD=NEW"));
  EXPECT_THAT(Mistake({"songs", "-n", "3"}), Not(HasSubstr("do you mean")))
      << "a letter is near to every other";
}

TEST_F(Help, AnEmptyWordIsNothingToSearchFor) {
  EXPECT_EQ(Mistake({""}), "tavrel: there is no command \"\"\n  See tavrel help.\n");
  const std::string file =
      Write("library.xml", LibraryText({{1, ""}}, {{Property("Name", "Evening"), {1}}}));
  EXPECT_EQ(Run({"-l", file, "songs", ""}).errors,
            "tavrel: there is no playlist named \"\"\n  See tavrel -l " + file + " playlists.\n");
}

TEST_F(Help, HelpOnNothingThereSaysWhatThereIs) {
  EXPECT_THAT(Mistake({"help", "ringtones", "ad"}),
              HasSubstr("tavrel ringtones has no command \"ad\"; do you mean:\n"
                        "    tavrel help ringtones add\n"));
  EXPECT_EQ(Mistake({"help", "zzzz"}),
            "tavrel: tavrel has no command \"zzzz\"\n  See tavrel help.\n");
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

TEST_F(Help, NoWordBehindTwoDashesIsACommand) {
  EXPECT_EQ(Mistake({"--", "songs"}),
            "tavrel: no word behind \"--\" is a command or an option; do you mean:\n"
            "    tavrel songs\n  See tavrel help.\n");
  EXPECT_THAT(Mistake({"-l", "x", "--", "songs", "Road trip"}),
              HasSubstr(":\n    tavrel -l x songs 'Road trip'\n"));
  EXPECT_THAT(Mistake({"--", "-q"}), HasSubstr(":\n    tavrel -q\n"));
  EXPECT_THAT(Mistake({"-l", "x", "--", "serch"}),
              HasSubstr("no command \"serch\"; do you mean:\n    tavrel -l x search\n"));
  EXPECT_THAT(Mistake({"songs", "--", "Road", "trip"}),
              HasSubstr("\n    tavrel songs 'Road trip'\n"))
      << "behind a command it is no word of its own";
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
