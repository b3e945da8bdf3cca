#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "system/BlockedSignals.h"
#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class TemporaryHome : public HostTest {
 protected:
  // Starts the program on a library whose load does not end, and returns once it is loading.
  std::unique_ptr<ChildProcess> StartAndWait(Command command = {}) const {
    fs::create_directories(Path("bin"));
    fs::create_directories(Path("lib"));
    fs::copy_file(TAVREL_HOST_PROGRAM, Path("bin/tavrel"));
    fs::create_symlink(TAVREL_STANDIN, Path("lib/" TAVREL_LIBRARY_NAME));
    fs::create_directories(Path("export/Album Artwork"));
    fs::create_directories(Path("export/iTunes Media"));
    command.environment["STANDIN_LOG"] = Path("log");
    command.environment["STANDIN_WAIT"] = "1";
    auto child = std::make_unique<ChildProcess>(CommandFor(
        Path("bin/tavrel"), {"--library", Write("export/library.xml", ""), "playlists"}, command));
    while (!LogHas("waiting")) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return child;
  }

  bool LogHas(const std::string& text) const {
    return FileBytes(Path("log")).find(text) != std::string::npos;
  }
};

class EndingSignal : public TemporaryHome, public testing::WithParamInterface<int> {};

TEST_P(EndingSignal, RemovesTheFolderAndStillEndsTheProgram) {
  const auto child = StartAndWait();
  EXPECT_THAT(TemporaryFiles(), SizeIs(1));
  child->Signal(GetParam());
  const Outcome outcome = child->Finish();
  EXPECT_EQ(outcome.signal, GetParam());
  EXPECT_THAT(TemporaryFiles(), IsEmpty());
  EXPECT_TRUE(fs::exists(Path("export/Album Artwork"))) << "only links are removed";
  EXPECT_TRUE(fs::exists(Path("export/library.xml")));
}

INSTANTIATE_TEST_SUITE_P(TemporaryHome, EndingSignal, testing::ValuesIn(system::kEndingSignals),
                         [](const auto& signal) {
                           return "Signal" + std::to_string(signal.param);
                         });

TEST_F(TemporaryHome, WhatOthersPutInItsPlaceStays) {
  const auto child = StartAndWait();
  const std::string name = TemporaryFiles().at(0);
  fs::rename(Path("temporary/" + name), Path("temporary/moved"));
  const std::string theirs =
      Write("temporary/" + name + "/Music/iTunes/iTunes Music Library.xml", "not ours");
  child->Signal(SIGTERM);
  EXPECT_EQ(child->Finish().signal, SIGTERM);
  EXPECT_TRUE(fs::exists(theirs));
  EXPECT_TRUE(fs::is_empty(Path("temporary/moved"))) << "what was made is removed";
}

TEST_F(TemporaryHome, AnEmptyFolderThatOthersPutInItsPlaceStays) {
  const auto child = StartAndWait();
  const std::string name = TemporaryFiles().at(0);
  fs::rename(Path("temporary/" + name), Path("temporary/moved"));
  fs::create_directory(Path("temporary/" + name));
  child->Signal(SIGTERM);
  EXPECT_EQ(child->Finish().signal, SIGTERM);
  EXPECT_TRUE(fs::exists(Path("temporary/" + name)));
}

TEST_F(TemporaryHome, ASignalOfALimitOnFilesDoesNotEndTheProgram) {
  const auto child = StartAndWait();
  child->Signal(SIGXFSZ);
  child->Signal(SIGTERM);
  EXPECT_EQ(child->Finish().signal, SIGTERM);
  EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(TemporaryHome, ASignalThatWasIgnoredStaysIgnored) {
  Command command;
  command.ignoredSignals = {SIGHUP};
  const auto child = StartAndWait(command);
  child->Signal(SIGHUP);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_THAT(TemporaryFiles(), SizeIs(1));
  child->Signal(SIGTERM);
  EXPECT_EQ(child->Finish().signal, SIGTERM);
  EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(TemporaryHome, IsRemovedAtTheEndHoweverItComes) {
  const std::string good = Write("good.xml", LibraryWithName("Nimrod"));
  EXPECT_EQ(Run({"--library", good}).exitCode, 0);
  EXPECT_EQ(Run({"--library", good, "songs", "missing"}).exitCode, 1);
  EXPECT_EQ(Run({"--library", Write("bad.xml", "\xFF")}).exitCode, 4);
  EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(TemporaryHome, ItsFolderMayBeRelativeAndHaveAnyName) {
  const std::string file = Write("library.xml", LibraryWithName("Nimrod"));
  for (const std::string folder : {"tmp", "50% #1?", "caf\xE9"}) {
    fs::create_directories(Path(folder));
    Command command;
    command.folder = Path("");
    command.environment["TMPDIR"] = folder;
    const Outcome outcome = Run({"--library", "library.xml", "songs", "--all"}, command);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("Nimrod"));
    EXPECT_TRUE(fs::is_empty(Path(folder)));
  }
}

TEST_F(TemporaryHome, WithoutTmpdirTheSystemsFolderIsUsed) {
  Command command;
  command.environment["TMPDIR"] = "";
  const std::string file = Write("library.xml", LibraryWithName("Nimrod"));
  EXPECT_EQ(Run({"--library", file}, command).exitCode, 0);
}

TEST_F(TemporaryHome, AFolderThatCannotBeWrittenToIsAMessage) {
  Command command;
  command.environment["TMPDIR"] = Path("nowhere");
  const std::string file = Write("library.xml", LibraryWithName("Nimrod"));
  const Outcome outcome = Run({"--library", file}, command);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot make a temporary folder below " + Path("nowhere") +
                                        ": No such file or directory"));
  EXPECT_THAT(outcome.errors, HasSubstr("TMPDIR"));
}

TEST_F(TemporaryHome, TheLibraryFileMayBeALink) {
  Write("real/library.xml", LibraryWithName("Nimrod"));
  fs::create_symlink("real/library.xml", Path("link.xml"));
  const Outcome outcome = Run({"--library", Path("link.xml"), "songs", "--all"});
  EXPECT_THAT(outcome.output, HasSubstr("Nimrod")) << outcome.errors;
}

}  // namespace
}  // namespace tavrel::test
