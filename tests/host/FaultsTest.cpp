// Each call of the program to the system fails in turn: it ends with a message, and nothing that it made is
// left half made.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "host/artwork/PictureFiles.h"
#include "tests/host/Fixture.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Soak.h"
#include "tests/support/StandInRunner.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr long kNever = 1000000000;

struct Fault {
  std::string kind;
  long number = kNever;  // of the call that fails
  bool after = false;    // whether all later ones do
};

class HostFaults : public HostTest, public testing::WithParamInterface<const char*> {
 protected:
  HostFaults() {
    fs::copy(TAVREL_SAMPLE_HOME "/Music/iTunes", Path("itunes"), fs::copy_options::recursive);
    test::WriteProgram(Path("bin/osascript"), "cat > /dev/null\n");
    Write("Tone.m4r", "tone");
    Write("music/a.mp3", std::string(200'000, 'a'));
    Write("music/b.mp3", "b");
    const auto song = [this](int id, const std::string& name) {
      return TrackText{id, Property("Name", name) +
                               Property("Location", "file://" + Path("music/" + name + ".mp3"))};
    };
    Write("small.xml",
          LibraryText({song(1, "a"), song(2, "b")}, {{Property("Name", "L"), {1, 2}}}));
  }

  Outcome RunWith(const std::vector<std::string>& arguments, const Fault& fault) const {
    fs::remove_all(Path("covers"));
    fs::remove_all(Path("copies"));
    Command command;
    command.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS},
                           {"FAULT_KIND", fault.kind},
                           {"FAULT_NUMBER", std::to_string(fault.number)},
                           {"FAULT_COUNT", Path("count")},
                           {"PATH", Path("bin") + ":/usr/bin:/bin"}};
    if (fault.after) command.environment["FAULT_AFTER"] = "1";
    std::vector<std::string> all = arguments;
    const bool namesLibrary = !all.empty() && all[0] == "-l";
    if (!namesLibrary) {
      all.insert(all.begin(), {"-l", Path("itunes/iTunes Music Library.xml")});
    }
    return Run(all, command);
  }

  long CountedCalls() const {
    long count = -1;
    std::ifstream(Path("count")) >> count;
    return count;
  }

  std::vector<std::vector<std::string>> Commands() const {
    return {{},
            {"songs", "--all", "--json"},
            {"playlists"},
            {"search", "a"},
            {"artwork", "--all", "--unclaimed", "-o", Path("covers")},
            {"artwork", "--all", "--per-song", "--force", "-o", Path("covers")},
            {"export", "--keep-missing", "--force", "-o", Path("lists")},
            {"export", "--format", "sqlite", "--force", "-o", Path("library.sqlite")},
            {"page", "-o", Path("page.html")},
            {"artwork", "--all", "--size", "64", "-o", Path("covers")},
            {"check"},
            {"-l", Path("small.xml"), "check", "--json"},  // which finds nothing that is wrong
            {"-l", Path("small.xml"), "copy", "L", "-o", Path("copies"), "--name", "{name}"},
            {"ringtones", "add", Path("Tone.m4r")}};
  }

  static void ExpectNoTemporaryFileIn(const std::string& folder) {
    if (!fs::exists(folder)) return;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(".tavrel-")) << entry.path();
    }
  }

  void ExpectNothingHalfDone() const {
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
    ExpectWholeCopies();
    ExpectNoTemporaryFileIn(Path(""));
    if (!fs::exists(Path("covers"))) return;
    for (const auto& entry : fs::directory_iterator(Path("covers"))) {
      const std::string bytes = FileBytes(entry.path());
      EXPECT_TRUE(host::IsWholePng(bytes) || host::IsWholeJpeg(bytes)) << entry.path();
    }
  }

  void ExpectWholeCopies() const {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(Path("copies"), ignored)) {
      const std::string bytes = FileBytes(entry.path());
      const std::string name = entry.path().filename();
      if (name == "L.m3u8") {
        EXPECT_TRUE(bytes.starts_with("#EXTM3U") && bytes.ends_with('\n')) << name;
      } else {
        EXPECT_EQ(bytes, name == "a.mp3" ? std::string(200'000, 'a') : "b") << name;
      }
    }
  }

  void ExpectGoodEnd(const std::vector<std::string>& arguments, const Fault& fault,
                     const Outcome& clean) const {
    const Outcome outcome = RunWith(arguments, fault);
    EXPECT_EQ(outcome.signal, 0);
    ExpectNothingHalfDone();
    if (outcome.exitCode == 0) {
      // What the library finds less of is no error to it; what this program fails to write is one.
      const bool mayBeLess = fault.kind != "write" && fault.kind != "make";
      EXPECT_TRUE(mayBeLess || outcome.output == clean.output);
      return;
    }
    EXPECT_THAT(outcome.exitCode, testing::AnyOf(1, 3, 4));
    EXPECT_NE(outcome.errors + outcome.output, "") << "not a word";
  }
};

const std::vector<const char*> kKinds {
  "open", "stat", "list", "read", "write", "make",
#if !TAVREL_SANITIZED  // which bring their own
      "memory",
#endif
};

// A few of the calls of each command, spread over all of them; many in scripts/soak. Under sanitizers each kind of call
// fails in every other command, and in each command every other kind.
TEST_P(HostFaults, EndWithAMessageAndLeaveNothingHalfDone) {
  const std::string kind = GetParam();
  std::int64_t met = 0;
  auto turn = std::find(kKinds.begin(), kKinds.end(), GetParam()) - kKinds.begin();
  for (const std::vector<std::string>& arguments : Commands()) {
    if (test::kSanitized && ++turn % 2 != 0) continue;
    const Outcome clean = RunWith(arguments, {.kind = kind});
    const long count = CountedCalls();
    ASSERT_GE(count, 0);
    const int few = test::kSanitized || kind == "memory" ? 1 : 2;
    const long samples = std::min<long>(count, test::Soaked(few, 150));
    for (long sample = 0; sample < samples; ++sample) {
      const Fault fault{kind, (2 * sample + 1) * count / (2 * samples), met % 3 == 2};
      ExpectGoodEnd(arguments, fault, clean);
      ++met;
      if (HasFailure()) FAIL() << testing::PrintToString(arguments) << " call " << fault.number;
    }
  }
  EXPECT_GT(met, 0);
  test::PrintFigure(met, "calls of the host to " + kind + " failed");
}

INSTANTIATE_TEST_SUITE_P(Of, HostFaults, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return std::string(kind.param); });

class WithoutThreads : public HostTest {};

// So many songs that the page holds them compressed, which is done in parts.
TEST_F(WithoutThreads, ThePageIsTheSame) {
  std::vector<TrackText> tracks;
  for (int id = 1; id <= 5000; ++id) tracks.push_back({id, Property("Name", std::to_string(id))});
  const std::string library = Write("library.xml", LibraryText(tracks));
  const std::vector<std::string> arguments{"--library", library, "page", "-o", "-", "-q"};
  const Outcome usual = Run(arguments);
  Command command;
  command.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS},
                         {"FAULT_KIND", "thread"},
                         {"FAULT_AFTER", "1"},
                         {"FAULT_COUNT", Path("count")}};
  const Outcome outcome = Run(arguments, command);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_TRUE(outcome.output == usual.output);
  EXPECT_GT(std::stol(FileBytes(Path("count"))), 4) << "the page was made by fewer threads";
}

class ReplacedFolder : public HostTest {};

// As somebody might who can write to the folder for temporary files.
TEST_F(ReplacedFolder, IsNeitherFollowedNorRemoved) {
  const std::string theirs = Write("theirs/Music/iTunes/iTunes Music Library.xml", "not ours");
  Command command;
  command.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS}, {"FAULT_REPLACE", Path("theirs")}};
  const Outcome outcome =
      Run({"--library", Write("library.xml", LibraryWithName("Nimrod")), "playlists"}, command);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("another program has put something else in its place"));
  EXPECT_TRUE(fs::exists(theirs));
  EXPECT_EQ(TemporaryFiles().size(), 2u) << "the link, and the folder where it was moved to";
}

}  // namespace
}  // namespace tavrel::test
