#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "host/output/Format.h"
#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kNoLibrary = 3;
constexpr int kUnreadable = 4;
constexpr off_t kLargestFile = (off_t{1} << 31) - (off_t{1} << 20);

class Diagnosis : public HostTest {
 protected:
  void ExpectDiagnosis(const std::string& file, int exitCode, const std::string& reason) const {
    const Outcome outcome = Run({"--library", file});
    EXPECT_EQ(outcome.exitCode, exitCode) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, AllOf(HasSubstr(file), HasSubstr(reason)));
    EXPECT_THAT(outcome.errors, Not(HasSubstr(Path("temporary")))) << "names the user's path only";
    EXPECT_THAT(TemporaryFiles(), testing::IsEmpty());
  }

  void ExpectUnreadable(std::string_view content, const std::string& reason) const {
    ExpectDiagnosis(Write("library.xml", content), kUnreadable, reason);
  }
};

TEST_F(Diagnosis, AMissingFileIsNoLibraryAndSaysWhatToDo) {
  const std::string file = Path("nothing.xml");
  ExpectDiagnosis(file, kNoLibrary, "there is no iTunes library file at " + file);
  ExpectDiagnosis(file, kNoLibrary, "Preferences, Advanced, \"Share iTunes Library XML\"");
  ExpectDiagnosis(file, kNoLibrary, "File, Library, Export Library");
}

TEST_F(Diagnosis, AMissingFolderIsNoLibrary) {
  ExpectDiagnosis(Path("no folder/library.xml"), kNoLibrary, "there is no iTunes library file at");
  ExpectDiagnosis(Write("file", "x") + "/library.xml", kNoLibrary, "there is no iTunes library");
}

TEST_F(Diagnosis, WithoutOptionsTheUsersOwnHomeFolderIsNamed) {
  const Outcome outcome = Run({});
  EXPECT_EQ(outcome.exitCode, kNoLibrary);
  EXPECT_THAT(outcome.errors,
              HasSubstr(Path("empty home") + "/Music/iTunes/iTunes Music Library.xml"));
}

TEST_F(Diagnosis, TheFolderOfTheHomeOptionIsNamedAsTheUserNamedIt) {
  Command command;
  command.folder = Path("");
  const Outcome outcome = Run({"--home", "empty home"}, command);
  EXPECT_EQ(outcome.exitCode, kNoLibrary);
  EXPECT_THAT(outcome.errors, HasSubstr(" empty home/Music/iTunes/iTunes Music Library.xml\n"));
}

TEST_F(Diagnosis, StandsAloneWhereverMessagesGo) {
  for (const Stream errors : {Stream::Pipe, Stream::Terminal}) {
    Command command;
    command.errors = errors;
    const Outcome missing = Run({"--library", Path("nothing.xml"), "playlists"}, command);
    EXPECT_THAT(missing.errors, testing::StartsWith("tavrel: there is no iTunes library file"));
    const Outcome bad = Run({"--library", Write("bad.xml", "\xFF"), "playlists"}, command);
    EXPECT_THAT(bad.errors, testing::StartsWith("tavrel: cannot read the library file"));
  }
}

TEST_F(Diagnosis, ADanglingLinkIsNoLibraryAndNamesItsTarget) {
  const std::string link = Path("link.xml");
  std::filesystem::create_symlink("elsewhere/lost.xml", link);
  ExpectDiagnosis(link, kNoLibrary, "It is a link to elsewhere/lost.xml, which does not exist.");
}

TEST_F(Diagnosis, AnEmptyFile) {
  ExpectUnreadable("", "It is empty.");
}

TEST_F(Diagnosis, APipeInPlaceOfTheFileDoesNotHang) {
  const std::string pipe = Path("pipe.xml");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  ExpectDiagnosis(pipe, kUnreadable, "It is not a regular file.");
  ExpectDiagnosis("/dev/null", kUnreadable, "It is not a regular file.");
}

TEST_F(Diagnosis, AnotherFormat) {
  ExpectUnreadable("bplist00\xD1\x01\x02", "It is a binary property list");
  ExpectUnreadable("hdfm\0\0\0\x90"s, "iTunes' own database (.itl)");
}

TEST_F(Diagnosis, Utf16WithAndWithoutAMark) {
  for (const std::string& start : {"\xFF\xFE<\0"s, "\xFE\xFF\0<"s, "<\0?\0"s, "\0<\0?"s}) {
    ExpectUnreadable(start, "It seems to be UTF-16 text");
  }
}

TEST_F(Diagnosis, WhatIsNoLibrary) {
  ExpectUnreadable("hfma\x01\x02", "Music's own database (.musicdb)");
  ExpectUnreadable("\x1F\x8B\x08", "It is empty.");
  ExpectUnreadable("PK\x03\x04\xFF", "It is a ZIP archive.");
  for (const char* page :
       {"<!DOCTYPE html><p>", "\n <HTML><body>404</body></html>", "<html>\xFF"}) {
    ExpectUnreadable(page, "It is a web page (HTML)");
  }
  ExpectUnreadable("<?xml?><!-- <plist> --><rss><channel/></rss>",
                   "It is no property list: its first element is <rss>.");
  ExpectUnreadable("<plist><dict><key>Label</key><string>job</string></dict></plist>",
                   "It is a property list without tracks");
  ExpectUnreadable("<plist><dict><key>Major Version</key><integer>1</integer>",
                   "It is cut off before its tracks.");
  EXPECT_EQ(Run({"-l", Write("new.xml", LibraryText({}))}).exitCode, 0) << "no track is no fault";
}

TEST_F(Diagnosis, TheHomeOptionsCompressedFileIsReadByTheOther) {
  const std::string file = Write("home/Music/iTunes/iTunes Music Library.xml", "\x1F\x8B\x08");
  EXPECT_THAT(
      Run({"--home", Path("home")}).errors,
      AllOf(HasSubstr("It is compressed with gzip."), HasSubstr("\n  tavrel -l '" + file + "'\n")));
}

TEST_F(Diagnosis, TheCommandsThatItNamesRead) {
  Write("library.xml", LibraryWithName("Dvo\u0159\u00E1k"));
  Command command;
  command.folder = Path("");
  const std::string program = TAVREL_HOST_PROGRAM;
  command.environment["PATH"] =
      program.substr(0, program.rfind('/')) + ":" + std::string(::getenv("PATH"));
  for (const std::string converter :
       {"iconv -f UTF-8 -t UTF-16", "iconv -f UTF-8 -t UTF-16LE", "iconv -f UTF-8 -t UTF-16BE",
        "python3 -c 'import plistlib, sys; plistlib.dump(plistlib.load(sys.stdin.buffer), "
        "sys.stdout.buffer, fmt=plistlib.FMT_BINARY)'"}) {
    const auto shell = [&](const std::string& script) {
      return RunProgram(CommandFor("/bin/sh", {"-c", script}, command));
    };
    ASSERT_EQ(shell(converter + " < library.xml > 'its file'").exitCode, 0);
    const Outcome refused = Run({"-l", "its file"}, command);
    EXPECT_EQ(refused.exitCode, kUnreadable) << converter;
    const std::vector<std::string> lines = Lines(refused.errors);
    ASSERT_GE(lines.size(), 3u) << refused.errors;
    const Outcome read = shell(lines[2] + " songs --all");
    EXPECT_EQ(read.exitCode, 0) << lines[2] << read.errors;
    EXPECT_THAT(read.output, HasSubstr("Dvo\u0159\u00E1k")) << lines[2];
  }
}

TEST_F(Diagnosis, TextThatIsNotUtf8NamesByteLineAndColumn) {
  ExpectUnreadable("\xE9<plist>", "byte 1 (line 1, column 1) is 0xE9.");
  ExpectUnreadable("<plist>\n<dict>\n<key>caf\xE9</key>", "byte 24 (line 3, column 9) is 0xE9.");
  ExpectUnreadable("<plist>\nDvo\u0159\xC0k", "byte 14 (line 2, column 5) is 0xC0.");
  ExpectUnreadable("<plist>caf\xC3", "byte 11 (line 1, column 11) is 0xC3.");
  ExpectUnreadable("<plist>\xED\xA0\x80</plist>", "byte 8 (line 1, column 8) is 0xED.");
}

TEST_F(Diagnosis, TheByteIsFoundInAnyPieceOfALargeFile) {
  constexpr std::size_t kPiece = 1 << 20;
  for (const std::size_t at : {kPiece - 4, kPiece - 1, kPiece, kPiece + 1, 2 * kPiece - 1}) {
    // Three-byte characters, so that pieces end inside of them.
    std::string text = "<plist>" + std::string(at % 3 == 0 ? 2 : (at - 7) % 3, ' ');
    while (text.size() + 3 <= at) text += "交";
    text.resize(at, ' ');
    text += "\xFF" + std::string(2 * kPiece, ' ');
    const std::string number = host::Grouped(static_cast<std::int64_t>(at) + 1);
    ExpectUnreadable(text, "byte " + number + " (line 1, column ");
  }
}

TEST_F(Diagnosis, NoElement) {
  ExpectUnreadable("Dear diary", "It holds no XML element.");
  ExpectUnreadable("<?xml version=\"1.0\"?>\n<!-- nothing -->\n", "It holds no XML element.");
  ExpectUnreadable("3 < 4", "It holds no XML element.");
  ExpectUnreadable("\0<plist></plist>"s, "It holds no XML element.");
}

TEST_F(Diagnosis, NoPermission) {
  Command command;
  command.user = ::geteuid() == 0 ? 65534 : 0;
  const std::string file = Write("library.xml", LibraryWithName("Nimrod"));
  // The other user must be able to reach the program and this test's folder.
  ::chmod(Path("").c_str(), 0755);
  ::chmod(Path("temporary").c_str(), 0777);
  ASSERT_EQ(Run({"--version"}, command).exitCode, 0) << "cannot run as another user";
  ASSERT_EQ(Run({"--library", file}, command).exitCode, 0);

  ASSERT_EQ(::chmod(file.c_str(), 0), 0);
  const Outcome outcome = Run({"--library", file}, command);
  EXPECT_EQ(outcome.exitCode, kUnreadable);
  EXPECT_THAT(outcome.errors, AllOf(HasSubstr(file), HasSubstr("Permission denied")));
}

TEST_F(Diagnosis, AFileThatIsTooLarge) {
  const std::string file = Write("library.xml", LibraryWithName("Nimrod"));
  ASSERT_EQ(::truncate(file.c_str(), kLargestFile + 1), 0);
  ExpectDiagnosis(
      file, kUnreadable,
      "It has 2,146,435,073 bytes; the library reads files of up to 2,146,435,072 bytes.");
}

TEST_F(Diagnosis, PathsAreShownWithoutControlCharacters) {
  const Outcome outcome = Run({"--library", Path("\x1b[31mred.xml")});
  EXPECT_EQ(outcome.exitCode, kNoLibrary);
  EXPECT_THAT(outcome.errors, AllOf(HasSubstr("/[31mred.xml"), Not(HasSubstr("\x1b"))));
}

}  // namespace
}  // namespace tavrel::test
