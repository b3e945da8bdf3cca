#include <gmock/gmock.h>

#include "host/output/Text.h"
#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

using host::Width;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Terminal : public HostTest {
 protected:
  Terminal() {
    std::vector<TrackText> tracks;
    const std::vector<std::string> names{
        "Symphony No. 9 in E minor, Op. 95, \"From the New World\": II. Largo",
        "交響曲第九番 ニ短調 作品百二十五「合唱付き」第四楽章",
        "Dvor\u030Ca\u0301k, Dvor\u030Ca\u0301k, Dvor\u030Ca\u0301k, Dvor\u030Ca\u0301k, and again",
        "Escape \x1b]0;title\x07 \x1b[2J \xC2\x9B"
        "31m here"};
    for (const std::string& name : names) {
      const int id = static_cast<int>(tracks.size()) + 1;
      tracks.push_back({id, Property("Name", name) + Property("Artist", name) +
                                Property("Album", name) + Property("Genre", "Classical") +
                                Number("Total Time", 3723000) + Number("Play Count", 12)});
    }
    file_ =
        Write("library.xml", LibraryText(tracks, {{Property("Name", names[1] + names[0]), {1}}}));
  }

  static Command OnTerminal(unsigned short columns) {
    Command command;
    command.output = Stream::Terminal;
    command.columns = columns;
    return command;
  }

  // The output of every command, on a terminal without styles.
  std::vector<std::string> PlainLines(Command command) const {
    command.environment["NO_COLOR"] = "1";
    std::string all;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"playlists"}, {"songs", "--all"}, {}}) {
      std::vector<std::string> words{"--library", "library.xml"};
      words.insert(words.end(), arguments.begin(), arguments.end());
      command.folder = Path("");
      const Outcome outcome = Run(words, command);
      EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
      all += outcome.output;
    }
    return Lines(all);
  }

  static std::size_t Widest(const std::vector<std::string>& lines) {
    std::size_t widest = 0;
    for (const std::string& line : lines) widest = std::max(widest, Width(line));
    return widest;
  }

  std::string file_;
};

TEST_F(Terminal, EveryLineFitsItsWidth) {
  for (const unsigned columns : {50u, 72u, 80u, 81u, 132u}) {
    EXPECT_EQ(Widest(PlainLines(OnTerminal(static_cast<unsigned short>(columns)))), columns);
  }
}

TEST_F(Terminal, NoControlByteOfANameReachesIt) {
  for (const std::string& line : PlainLines(OnTerminal(200))) {
    EXPECT_EQ(line, host::Clean(line));
  }
}

TEST_F(Terminal, TheTerminalsOwnWidthGoesBeforeColumns) {
  Command command = OnTerminal(60);
  command.environment["COLUMNS"] = "100";
  EXPECT_EQ(Widest(PlainLines(command)), 60u);
}

TEST_F(Terminal, ATerminalThatDoesNotKnowItsWidthGetsColumnsOr80) {
  Command command = OnTerminal(0);
  EXPECT_EQ(Widest(PlainLines(command)), 80u);
  command.environment["COLUMNS"] = "100";
  EXPECT_EQ(Widest(PlainLines(command)), 100u);
}

TEST_F(Terminal, APipeHasNoLimitUnlessColumnsIsSet) {
  Command command;
  EXPECT_GT(Widest(PlainLines(command)), 200u);
  EXPECT_THAT(PlainLines(command), testing::Contains(HasSubstr("\": II. Largo  Symphony No. 9")));
  command.environment["COLUMNS"] = "60";
  EXPECT_EQ(Widest(PlainLines(command)), 60u);
}

TEST_F(Terminal, ColumnsThatIsNoWidthIsIgnored) {
  for (const char* columns : {"", "0", "-5", "wide", "80x", "99999999999"}) {
    Command command;
    command.environment["COLUMNS"] = columns;
    EXPECT_GT(Widest(PlainLines(command)), 200u) << columns;
  }
}

TEST_F(Terminal, GetsStyles) {
  const Outcome outcome = Run({"--library", file_, "playlists"}, OnTerminal(80));
  EXPECT_THAT(outcome.output, HasSubstr("\x1b[1mName\x1b[0m"));
}

TEST_F(Terminal, GetsNoStylesWithNoColorOrWhenItIsDumb) {
  Command command = OnTerminal(80);
  command.environment["NO_COLOR"] = "1";
  EXPECT_THAT(Run({"--library", file_}, command).output, Not(HasSubstr("\x1b")));
  command.environment["NO_COLOR"] = "";
  EXPECT_THAT(Run({"--library", file_}, command).output, HasSubstr("\x1b")) << "set but empty";
  command.environment["TERM"] = "dumb";
  EXPECT_THAT(Run({"--library", file_}, command).output, Not(HasSubstr("\x1b")));
}

TEST_F(Terminal, APipeGetsNoStyles) {
  for (const std::string command : {"playlists", "--json"}) {
    EXPECT_THAT(Run({"--library", file_, command}).output, Not(HasSubstr("\x1b")));
  }
}

TEST_F(Terminal, JsonIsTheSameEverywhere) {
  const std::vector<std::string> arguments{"--library", file_, "songs", "--all", "--json"};
  EXPECT_EQ(Run(arguments, OnTerminal(40)).output, Run(arguments).output);
}

TEST_F(Terminal, MessagesOfTheLibraryAreMadeHarmless) {
  // The library quotes a text whose reference has no end.
  const std::string file = Write("bad.xml", LibraryWithName("Nim &rod \x1b[31m"));
  for (const Stream errors : {Stream::Pipe, Stream::Terminal}) {
    Command command;
    command.errors = errors;
    const Outcome outcome = Run({"-v", "--library", file, "songs", "--all"}, command);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.errors, AllOf(HasSubstr("\"Nim &rod [31m\""), Not(HasSubstr("\x1b"))));
  }
}

TEST_F(Terminal, AMessageOfAnyLengthArrivesWhole) {
  std::string name = "&";  // a reference that has no end
  while (name.size() < 300000) name += "交響曲 ";
  const std::string file = Write("long.xml", LibraryWithName(name + "the end"));
  const Outcome outcome = Run({"-v", "--library", file, "songs", "--all", "--json"});
  EXPECT_EQ(Lines(outcome.errors).size(), 1u);
  EXPECT_THAT(outcome.errors, HasSubstr(name + "the end"));
}

TEST_F(Terminal, EveryMessageArrivesInItsOrder) {
  std::vector<TrackText> tracks;
  for (int id = 1; id <= 2000; ++id) {
    tracks.push_back({id, Property("Name", "&broken " + std::to_string(id))});
  }
  const std::string file = Write("many.xml", LibraryText(tracks));
  const std::vector<std::string> lines =
      Lines(Run({"-v", "--library", file, "songs", "--all", "--json"}).errors);
  ASSERT_EQ(lines.size(), tracks.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_THAT(lines[i], HasSubstr("&broken " + std::to_string(i + 1)));
  }
}

TEST_F(Terminal, ALibraryThatDoesNotLoadHasOneMessageOnly) {
  Command command;
  command.errors = Stream::Terminal;
  const Outcome outcome = Run({"--library", Path("nothing.xml")}, command);
  EXPECT_THAT(outcome.errors, testing::StartsWith("tavrel: there is no iTunes library file at"));
}

}  // namespace
}  // namespace tavrel::test
