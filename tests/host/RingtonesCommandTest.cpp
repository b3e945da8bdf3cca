// `tavrel ringtones`, run as its users run it.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"
#include "tests/support/StandInRunner.h"

namespace tavrel::test {
namespace {

using test::Contents;
using test::Json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class RingtonesCommand : public HostTest {
 protected:
  RingtonesCommand() : library(Write("itunes/Library.xml", LibraryWithName("Nimrod"))) {}

  void Put(const std::string& name) const {
    Write("itunes/iTunes Media/Ringtones/" + name, "tone");
  }

  // Makes the stand-in for `osascript` that the next commands find. body: of a shell script.
  void InstallRunner(std::string_view body) const {
    test::WriteProgram(Path("bin/osascript"), body);
  }
  [[nodiscard]] std::string Script() const { return Contents(Path("bin/osascript.script")); }

  [[nodiscard]] Command InFolder(const std::string& folder = {}) const {
    Command command;
    command.environment = {{"PATH", Path("bin") + ":/usr/bin:/bin"}};
    command.folder = folder;
    return command;
  }

  [[nodiscard]] Outcome Ringtones(std::vector<std::string> arguments, Command command) const {
    arguments.insert(arguments.begin(), {"--library", library, "ringtones"});
    return Run(arguments, std::move(command));
  }

  std::string library;
};

std::string ScriptFor(const std::string& path) {
  return "set Ringtone to (POSIX file \"" + path +
         "\")\n"
         "tell application \"iTunes\"\n"
         "    activate\n"
         "    play Ringtone\n"
         "end tell\n"
         "tell application \"System Events\"\n"
         "    keystroke \"l\" using command down\n"
         "end tell\n";
}

// ---- The list -----------------------------------------------------------------------------------

TEST_F(RingtonesCommand, ListsNamesAndFiles) {
  for (const char* name : {"Bell", "My.Tone.m4r", ".DS_Store", "Folder/inside.m4r"}) Put(name);
  const Outcome outcome = Ringtones({}, InFolder());
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(Lines(outcome.output),
              ElementsAre("#  Name  File", "0  Bell  Bell", "1  My    My.Tone.m4r"));
}

TEST_F(RingtonesCommand, ListsLocationsBesideTheLibraryFileAsJson) {
  Put("My.Tone.m4r");
  const Json list = Json::Parse(Ringtones({"--json"}, InFolder()).output);
  const std::string location = Path("itunes/iTunes Media/Ringtones/My.Tone.m4r");
  EXPECT_EQ(list, Json::Parse(R"([{"position":0,"name":"My","location":")" + location + R"("}])"));
  const Json songs =
      Json::Parse(Run({"--library", library, "songs", "Ringtones", "--json"}).output);
  EXPECT_EQ(songs[0]["path"], location);
}

TEST_F(RingtonesCommand, ListsLocationsBelowTheHomeFolderAsJson) {
  Write("home/Music/iTunes/iTunes Music Library.xml", LibraryWithName("Nimrod"));
  const std::string tone = Write("home/Music/iTunes/iTunes Media/Ringtones/Bell", "");
  const Json list = Json::Parse(Run({"--home", Path("home"), "ringtones", "--json"}).output);
  EXPECT_EQ(list[0]["location"], tone);
}

TEST_F(RingtonesCommand, SaysThatThereAreNone) {
  const Outcome outcome = Ringtones({}, InFolder());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "tavrel: the library has no ringtones\n");
  const Outcome json = Ringtones({"--json"}, InFolder());
  EXPECT_EQ(json.exitCode, 1);
  EXPECT_EQ(json.output, "[]\n");
}

// ---- Adding -------------------------------------------------------------------------------------

TEST_F(RingtonesCommand, AddSendsTheExactScript) {
  InstallRunner(test::kRecord);
  const std::string tone = Write("My.Tone.m4r", "");
  const Outcome outcome = Ringtones({"add", tone}, InFolder());
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(Script(), ScriptFor(tone));
  EXPECT_THAT(outcome.errors, StartsWith("tavrel: iTunes will be started, play " + tone));
  EXPECT_THAT(outcome.output, StartsWith("Done: "));
}

TEST_F(RingtonesCommand, AddMakesThePathAbsolute) {
  Write("tones/My Tone.m4r", "");
  for (const char* file : {"My Tone.m4r", "./My Tone.m4r", ".//My Tone.m4r"}) {
    InstallRunner("cat > \"$0.script\"");
    EXPECT_EQ(Ringtones({"add", file}, InFolder(Path("tones"))).exitCode, 0);
    EXPECT_EQ(Script(), ScriptFor(Path("tones/My Tone.m4r"))) << file;
  }
  // What a ".." leads to is for the system to say: the folder before it may be a link.
  EXPECT_EQ(Ringtones({"add", "../tones/My Tone.m4r"}, InFolder(Path("tones"))).exitCode, 0);
  EXPECT_EQ(Script(), ScriptFor(Path("tones/../tones/My Tone.m4r")));
}

TEST_F(RingtonesCommand, AddSaysWhatItDoesBeforeTheScriptRuns) {
  // Ends the program from within: what it says later is never seen.
  InstallRunner("read -r pid name state host rest < /proc/$PPID/stat; kill -KILL $host; sleep 1");
  const std::string tone = Write("Tone.m4r", "");
  for (const Stream stream : {Stream::Pipe, Stream::Terminal}) {
    Command command = InFolder();
    command.errors = stream;
    const Outcome outcome = Ringtones({"add", tone}, command);
    EXPECT_EQ(outcome.signal, SIGKILL);
    EXPECT_THAT(outcome.errors, StartsWith("tavrel: iTunes will be started"));
  }
}

TEST_F(RingtonesCommand, AddShowsEachMessageOnceOnATerminal) {
  InstallRunner("echo refused; exit 1");
  const std::string tone = Write("T", "");
  Command command = InFolder();
  command.errors = Stream::Terminal;
  command.columns = 200;
  const std::vector<std::string> lines = Lines(Ringtones({"add", tone, "-v"}, command).errors);
  ASSERT_GE(lines.size(), 4u);
  EXPECT_THAT(lines[0], StartsWith("tavrel: iTunes will be started"));
  EXPECT_EQ(lines[1], "refused");
  EXPECT_THAT(lines[2], HasSubstr("Play ringtone script execute error."));
  EXPECT_THAT(lines[3], StartsWith("tavrel: The ringtone could not be added"));
}

TEST_F(RingtonesCommand, AddExplainsAScriptInError) {
  InstallRunner("exit 1");
  const Outcome outcome = Ringtones({"add", Write("Tone.m4r", ""), "-v"}, InFolder());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors, HasSubstr("Play ringtone script execute error.\n"));
  EXPECT_THAT(outcome.errors, HasSubstr("tavrel: The ringtone could not be added: the script"));
}

TEST_F(RingtonesCommand, AddAnswersInJson) {
  const std::string tone = Write("Tone.m4r", "");
  for (const int result : {0, -1}) {
    InstallRunner(result == 0 ? "exit 0" : "exit 1");
    const Outcome outcome = Ringtones({"add", tone, "--json"}, InFolder());
    EXPECT_EQ(outcome.exitCode, result == 0 ? 0 : 1);
    const Json answer = Json::Parse(outcome.output);
    EXPECT_EQ(answer["file"], tone);
    EXPECT_EQ(answer["result"], result);
    EXPECT_TRUE(answer["meaning"].IsText());
  }
}

// ---- What is refused before anything is done ----------------------------------------------------

TEST_F(RingtonesCommand, AddRefusesAPathThatWouldChangeTheScript) {
  struct Case {
    const char* name;
    const char* what;
  };
  for (const Case& refused : {Case{"a\"b.m4r", "a double quote"}, Case{"a\\b.m4r", "a backslash"},
                              Case{"a\nb.m4r", "a line break"}, Case{"a\rb.m4r", "a line break"}}) {
    InstallRunner(test::kRecord);
    const std::string tone = Write(refused.name, "");
    const Outcome outcome = Ringtones({"add", tone}, InFolder());
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("the path has " + std::string(refused.what) + " in it"));
    EXPECT_THAT(outcome.errors, Not(HasSubstr("will be started")));
    EXPECT_EQ(Script(), "");

    EXPECT_EQ(Ringtones({"add", "--force", tone}, InFolder()).exitCode, 0);
    EXPECT_EQ(Script(), ScriptFor(tone));
    std::filesystem::remove(Path("bin/osascript.script"));
  }
}

TEST_F(RingtonesCommand, AddRefusesWhatIsNoFile) {
  InstallRunner(test::kRecord);
  EXPECT_THAT(Ringtones({"add", Path("missing.m4r")}, InFolder()).errors,
              HasSubstr("there is no such file"));
  EXPECT_THAT(Ringtones({"add", ""}, InFolder()).errors, HasSubstr("there is no such file"));
  EXPECT_THAT(Ringtones({"add", Path("bin")}, InFolder()).errors, HasSubstr("this is a folder"));
  EXPECT_EQ(Ringtones({"add", Path("missing.m4r")}, InFolder()).exitCode, 1);
  EXPECT_EQ(Ringtones({"add"}, InFolder()).exitCode, 2);
  EXPECT_EQ(Script(), "");
}

TEST_F(RingtonesCommand, AddSaysThatThereIsNoRunnerBeforeDoingAnything) {
  Command command = InFolder();
  command.environment["PATH"] = Path("bin");
  const Outcome outcome = Ringtones({"add", Write("Tone.m4r", "")}, command);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(Lines(outcome.errors).size(), 1u) << outcome.errors;
  EXPECT_THAT(outcome.errors, StartsWith("tavrel: this system has no osascript"));
}

}  // namespace
}  // namespace tavrel::test
