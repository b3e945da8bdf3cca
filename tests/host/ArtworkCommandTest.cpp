// tavrel artwork, as its users meet it.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/host/DecodedPicture.h"
#include "tests/host/Fixture.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/Json.h"
#include "tests/support/Sanitizers.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using test::Bytes;
using test::CacheHeader;
using test::Decode;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

// Four pixels: red, green, blue, white.
const std::string kArgbPixels(
    "\xFF\xFF\0\0"
    "\xFF\0\xFF\0"
    "\xFF\0\0\xFF"
    "\xFF\xFF\xFF\xFF",
    16);
const std::string kBgraPixels(
    "\0\0\xFF\xFF"
    "\0\xFF\0\xFF"
    "\xFF\0\0\xFF"
    "\xFF\xFF\xFF\xFF",
    16);

std::string OnePicture(const std::string& pixels = kArgbPixels, const char* code = "ARGb") {
  return CacheHeader() + Bytes({.image = pixels, .code = code, .width = 2, .height = 2});
}

class ArtworkCommand : public HostTest {
 protected:
  // A song of the library in the folder "home", whose cache file holds `cache` unless it is empty.
  void AddSong(const std::string& properties, const std::string& cache = {}) {
    const int number = static_cast<int>(tracks_.size()) + 1;
    const std::string id = "00000000000000" + std::to_string(10 + number);
    tracks_.push_back({100 + number, properties + Property("Persistent ID", id)});
    items_.push_back(100 + number);
    if (!cache.empty()) Cache("0000000000000000-" + id + ".itc2", cache);
  }
  void Cache(const std::string& name, const std::string& contents) const {
    Write("home/Music/iTunes/Album Artwork/" + name, contents);
  }
  void WriteLibrary() const {
    Write("home/Music/iTunes/iTunes Music Library.xml",
          LibraryText(tracks_, {{Property("Name", "Music"), items_}}));
  }
  Outcome Artwork(std::vector<std::string> arguments, const std::string& home = "home") const {
    arguments.insert(arguments.begin(), {"--home", Path(home), "artwork"});
    Command command;
    command.folder = Path("here");
    fs::create_directories(command.folder);
    return Run(arguments, command);
  }
  Outcome Sample(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--home", TAVREL_SAMPLE_HOME, "artwork"});
    return Run(arguments);
  }

  std::vector<TrackText> tracks_;
  std::vector<int> items_;
};

std::string Named(std::string_view artist, std::string_view album, std::string_view name) {
  return Property("Name", name) + Property("Artist", artist) + Property("Album", album);
}

TEST_F(ArtworkCommand, EveryCoverOfTheSampleOpensInAnIndependentDecoder) {
  const Outcome outcome = Sample({"--all", "--unclaimed", "-o", Path("covers"), "--json"});
  EXPECT_EQ(outcome.exitCode, 1) << "some files of the sample are damaged";
  EXPECT_EQ(outcome.errors, "");
  const test::Json summary = test::Json::Parse(outcome.output);
  EXPECT_EQ(summary["written"], 22);
  EXPECT_EQ(summary["kept"], 0);
  EXPECT_EQ(summary["damaged"].size(), 4U);
  EXPECT_THAT(summary["failed"], IsEmpty());
  const std::vector<std::string> names = FolderNames(Path("covers"));
  EXPECT_EQ(names.size(), 22U);
  for (const std::string& name : names) {
    const std::string bytes = FileBytes(Path("covers/" + name));
    EXPECT_TRUE(Decode(bytes).has_value()) << name;
    EXPECT_TRUE(name.ends_with(bytes.starts_with("\x89PNG") ? ".png" : ".jpg")) << name;
  }
}

TEST_F(ArtworkCommand, LargestPictureOfTheSampleIsTaken) {
  Sample({"--all", "-o", Path("covers")});
  const auto cover =
      Decode(FileBytes(Path("covers/Public Domain Chamber Players - Brandenburg Concertos.png")));
  ASSERT_TRUE(cover.has_value());
  EXPECT_EQ(cover->width, 256U);
}

TEST_F(ArtworkCommand, RawPixelsBecomeAPngOfTheSameColours) {
  AddSong(Named("A", "One", "x"), OnePicture());
  AddSong(Named("A", "Two", "y"), OnePicture(kBgraPixels, "bGRA"));
  WriteLibrary();
  EXPECT_EQ(Artwork({"--all", "-o", "."}).exitCode, 0);
  for (const char* name : {"A - One.png", "A - Two.png"}) {
    const auto picture = Decode(FileBytes(Path("here/") + name));
    ASSERT_TRUE(picture.has_value()) << name;
    EXPECT_EQ(picture->width, 2U);
    EXPECT_EQ(picture->height, 2U);
    using Pixel = std::array<unsigned char, 4>;
    EXPECT_EQ(picture->pixels,
              (std::vector<Pixel>{
                  {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}}))
        << name;
  }
}

TEST_F(ArtworkCommand, SongsOfAnAlbumShareTheCoverOfOne) {
  AddSong(Named("A", "One", "x"));
  AddSong(Named("A", "One", "y"), OnePicture());
  AddSong(Named("A", "Other", "z"));
  WriteLibrary();
  const Outcome perAlbum = Artwork({"--all", "-o", "albums"});
  EXPECT_EQ(perAlbum.exitCode, 0) << perAlbum.errors;
  EXPECT_EQ(perAlbum.output, "1 cover written\n1 song without a cover\n");
  EXPECT_THAT(FolderNames(Path("here/albums")), UnorderedElementsAre("A - One.png"));
  Artwork({"--all", "--per-song", "-o", "songs"});
  EXPECT_THAT(FolderNames(Path("here/songs")),
              UnorderedElementsAre("A - One - x.png", "A - One - y.png"));
}

TEST_F(ArtworkCommand, SongWithoutAFileOfItsOwnHasTheCoverOfItsAlbum) {
  AddSong(Named("A", "One", "x"));
  AddSong(Named("A", "One", "y"), OnePicture());
  AddSong(Named("A", "Other", "z"));
  AddSong(Named("", "", "lonely"));
  WriteLibrary();
  const Outcome shared = Artwork({"Music", "x"});
  EXPECT_EQ(shared.exitCode, 0) << shared.errors;
  EXPECT_EQ(shared.output, "A - One - x.png\n");
  EXPECT_EQ(FileBytes(Path("here/A - One - x.png")).substr(0, 4), "\x89PNG");
  EXPECT_THAT(Artwork({"Music", "x", "--list"}).output, HasSubstr("ARGB"));
  for (const char* without : {"z", "lonely"}) {
    const Outcome outcome = Artwork({"Music", without});
    EXPECT_EQ(outcome.exitCode, 1) << without;
    EXPECT_THAT(outcome.errors, HasSubstr("the artwork cache has no readable file")) << without;
  }
}

TEST_F(ArtworkCommand, DamagedFileOfASongIsSaidAndMadeUpForByItsAlbum) {
  const std::string good = OnePicture();
  AddSong(Named("A", "One", "x"), good.substr(0, good.size() - 1));
  AddSong(Named("A", "One", "y"), good);
  WriteLibrary();
  const Outcome outcome = Artwork({"Music", "x"});
  EXPECT_EQ(outcome.exitCode, 1) << "a part of the work failed";
  EXPECT_EQ(outcome.output, "A - One - x.png\n");
  EXPECT_EQ(outcome.errors,
            "tavrel: the song's own cache file is damaged; this is the cover of its album\n");
}

TEST_F(ArtworkCommand, AlbumsAreToldApartByArtistUnlessTheyShareAFolder) {
  const auto in = [](const char* folder) {
    return Property("Location", std::string("file:///Music/") + folder + "/x.mp3");
  };
  AddSong(Named("A", "Hits", "1") + in("A"), OnePicture());
  AddSong(Named("B", "Hits", "2") + in("B"), OnePicture());
  AddSong(Named("C", "Tribute", "3") + in("Compilations"), OnePicture());
  AddSong(Named("D", "Tribute", "4") + in("Compilations"));
  WriteLibrary();
  Artwork({"--all", "-o", "."});
  EXPECT_THAT(FolderNames(Path("here")), UnorderedElementsAre("A - Hits.png", "B - Hits.png",
                                                              "Various Artists - Tribute.png"));
}

TEST_F(ArtworkCommand, NamesAreSafeAndTheirOwn) {
  AddSong(Named("../..", "/etc/\tpasswd", "1"), OnePicture());
  AddSong(Named("AC/DC", "x", "2"), OnePicture());
  AddSong(Named("ac/dc", "X", "3"), OnePicture());
  AddSong(Named("", "", ""), OnePicture());
  AddSong(Named("", std::string(300, 'n'), ""), OnePicture());
  WriteLibrary();
  const Outcome outcome = Artwork({"--all", "-o", "."});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(FolderNames(Path("here")),
              UnorderedElementsAre("_.. - _etc_ passwd.png", "AC_DC - x.png", "ac_dc - X (2).png",
                                   "Untitled.png", std::string(251, 'n') + ".png"));
}

TEST_F(ArtworkCommand, NamesSuitEveryFileSystem) {
  AddSong(Named("Who?", "a:b\\c*", "1"), OnePicture());
  AddSong(Named("", "\"x\" &#60;y&#62; | z", "2"), OnePicture());
  AddSong(Named("", "Aux", "3"), OnePicture());
  AddSong(Named("", "com1.live", "4"), OnePicture());
  AddSong(Named("", "Etc...", "5"), OnePicture());
  WriteLibrary();
  EXPECT_EQ(Artwork({"--all", "-o", "."}).exitCode, 0);
  EXPECT_THAT(FolderNames(Path("here")),
              UnorderedElementsAre("Who_ - a_b_c_.png", "_x_ _y_ _ z.png", "_Aux.png",
                                   "_com1.live.png", "Etc.png"));
}

TEST_F(ArtworkCommand, NothingWrittenEndsWithOne) {
  AddSong(Named("A", "One", "x"));
  WriteLibrary();
  const Outcome outcome = Artwork({"--all", "-o", "."});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "0 covers written\n1 song without a cover\n");
  EXPECT_EQ(Artwork({"--all", "--json", "-o", "."}).exitCode, 1);
}

TEST_F(ArtworkCommand, NothingListedEndsWithOne) {
  const std::string empty = Write("empty.itc2", CacheHeader());
  const Outcome outcome = Artwork({empty, "--list"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.errors, "tavrel: the file holds no image\n");
  const Outcome json = Artwork({empty, "--list", "--json"});
  EXPECT_EQ(json.exitCode, 1);
  EXPECT_EQ(json.output, "[]\n");
}

TEST_F(ArtworkCommand, NothingIsOverwrittenWithoutForce) {
  AddSong(Named("A", "One", "x"), OnePicture());
  WriteLibrary();
  Write("here/A - One.png", "mine");
  const Outcome kept = Artwork({"--all", "-o", "."});
  EXPECT_EQ(kept.exitCode, 0);
  EXPECT_THAT(kept.output, HasSubstr("0 covers written\n1 file kept"));
  EXPECT_EQ(FileBytes(Path("here/A - One.png")), "mine");
  const Outcome refused = Artwork({"Music", "0", "-o", "A - One.png"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.errors, HasSubstr("--force"));
  EXPECT_EQ(FileBytes(Path("here/A - One.png")), "mine");
  EXPECT_EQ(Artwork({"--all", "--force", "-o", "."}).output, "1 cover written\n");
  EXPECT_TRUE(Decode(FileBytes(Path("here/A - One.png"))).has_value());
  EXPECT_THAT(FolderNames(Path("here")), UnorderedElementsAre("A - One.png"));
}

TEST_F(ArtworkCommand, DamagedFilesAreNamed) {
  const std::string good = OnePicture();
  AddSong(Named("A", "Cut", "1"), good.substr(0, good.size() - 1));
  AddSong(Named("A", "Tag", "2"), CacheHeader(284, "Itch"));
  AddSong(Named("A", "Next", "3"), good);
  WriteLibrary();
  const Outcome outcome = Artwork({"--all", "-o", "."});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.output, StartsWith("1 cover written\n2 songs without a cover\n2 damaged "));
  EXPECT_THAT(outcome.output, HasSubstr("0000000000000000-0000000000000011.itc2\n"));
  EXPECT_THAT(outcome.output, HasSubstr("0000000000000000-0000000000000012.itc2\n"));
  EXPECT_THAT(FolderNames(Path("here")), UnorderedElementsAre("A - Next.png"));
}

TEST_F(ArtworkCommand, DamagedFileIsMadeUpForByAnotherSongOfTheAlbum) {
  AddSong(Named("A", "One", "1"), CacheHeader().substr(0, 9));
  AddSong(Named("A", "One", "2"), OnePicture());
  WriteLibrary();
  const Outcome outcome = Artwork({"--all", "-o", "."});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.output, StartsWith("1 cover written\n1 damaged file:\n"));
}

TEST_F(ArtworkCommand, UnclaimedFilesAreNamedByTheirFile) {
  AddSong(Named("A", "One", "1"), OnePicture());
  Cache("Download/0000000000000000-00000000000000FF.itc2", OnePicture());
  Cache("Download/stream.itc", OnePicture());
  Cache("Download/stream.ITC", OnePicture());
  WriteLibrary();
  Artwork({"--all", "-o", "claimed"});
  EXPECT_THAT(FolderNames(Path("here/claimed")), UnorderedElementsAre("A - One.png"));
  EXPECT_EQ(Artwork({"--all", "--unclaimed", "-o", "all"}).output, "3 covers written\n");
  EXPECT_THAT(
      FolderNames(Path("here/all")),
      UnorderedElementsAre("A - One.png", "0000000000000000-00000000000000FF.png", "stream.png"));
}

TEST_F(ArtworkCommand, CachesWithoutALibraryFileAreAllUnclaimed) {
  Cache("0000000000000000-00000000000000FF.itc2", OnePicture());
  Cache("Download/stream.itc", OnePicture());
  const Outcome outcome = Artwork({"--all", "--unclaimed", "-o", "covers"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output, "2 covers written\n");
  EXPECT_THAT(FolderNames(Path("here/covers")),
              UnorderedElementsAre("0000000000000000-00000000000000FF.png", "stream.png"));
  const Outcome byFile = Run({"--library", Path("home/Music/iTunes/none.xml"), "artwork", "--all",
                              "--unclaimed", "-o", Path("others")});
  EXPECT_EQ(byFile.output, "2 covers written\n") << byFile.errors;
  EXPECT_EQ(Artwork({"--all", "-o", "x"}).exitCode, 3) << "whose songs are meant?";
}

TEST_F(ArtworkCommand, UnclaimedNeedsCachesOrALibraryAndOneThatIsThereMustBeReadable) {
  const Outcome nothing = Artwork({"--all", "--unclaimed", "-o", "x"}, "nowhere");
  EXPECT_EQ(nothing.exitCode, 3);
  EXPECT_THAT(nothing.errors, StartsWith("tavrel: there is no iTunes library file at"));
  Cache("any.itc2", OnePicture());
  Write("home/Music/iTunes/iTunes Music Library.xml", "\xFF");
  const Outcome damaged = Artwork({"--all", "--unclaimed", "-o", "x"});
  EXPECT_EQ(damaged.exitCode, 4);
  EXPECT_THAT(damaged.errors, StartsWith("tavrel: cannot read the library file"));
  EXPECT_FALSE(fs::exists(Path("here/x"))) << "nothing is begun";
}

TEST_F(ArtworkCommand, SongIsNamedByPositionOrName) {
  AddSong(Named("A", "One", "Étude"), OnePicture());
  AddSong(Named("A", "Two", "Other"));
  WriteLibrary();
  for (const char* song : {"0", "Étude", "e\u0301tude"}) {
    const Outcome outcome = Artwork({"Music", song, "--force"});
    EXPECT_EQ(outcome.output, "A - One - Étude.png\n") << song << outcome.errors;
  }
  EXPECT_EQ(Artwork({"Music", "Other"}).exitCode, 1);
  EXPECT_EQ(Artwork({"Music", "7"}).exitCode, 1);
  EXPECT_EQ(Artwork({"Nowhere", "0"}).exitCode, 1);
}

TEST_F(ArtworkCommand, ExtensionIsThatOfThePicture) {
  AddSong(Named("A", "One", "x"), OnePicture());
  WriteLibrary();
  EXPECT_EQ(Artwork({"Music", "0", "-o", "a.png"}).output, "a.png\n");
  EXPECT_EQ(Artwork({"Music", "0", "-o", "b.jpeg"}).output, "b.png\n");
  EXPECT_EQ(Artwork({"Music", "0", "-o", "No. 1"}).output, "No. 1.png\n");
  EXPECT_EQ(Artwork({"Music", "0", "-o", "c.PNG"}).output, "c.PNG\n");
  fs::create_directory(Path("here/folder"));
  EXPECT_EQ(Artwork({"Music", "0", "-o", "folder"}).output, "folder/A - One - x.png\n");
  const Outcome toOutput = Artwork({"Music", "0", "-o", "-"});
  EXPECT_THAT(toOutput.output, StartsWith("\x89PNG"));
  EXPECT_THAT(toOutput.output, HasSubstr("IEND"));
}

TEST_F(ArtworkCommand, ListShowsTheImages) {
  AddSong(Named("A", "One", "x"), OnePicture() + Bytes({.image = test::LikeJpeg(30)}));
  WriteLibrary();
  const Outcome outcome = Artwork({"Music", "0", "--list"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(Lines(outcome.output), testing::ElementsAre("#  Format  Width  Height  Bytes",
                                                          "0  ARGB        2       2     16",
                                                          "1  JPEG      600     600     30"));
  const test::Json list = test::Json::Parse(Artwork({"Music", "0", "--list", "--json"}).output);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]["format"], "ARGB");
  EXPECT_EQ(list[1]["size"], 30);
}

TEST_F(ArtworkCommand, CacheFileNeedsNoLibrary) {
  const std::string file = Write("any.itc2", OnePicture());
  const Outcome outcome = Artwork({file}, "empty home");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output, "any.png\n");
  EXPECT_EQ(Artwork({file, "--list"}, "empty home").exitCode, 0);
  EXPECT_EQ(Artwork({Write("other", "text")}, "empty home").exitCode, 1);
  EXPECT_EQ(Artwork({"Music", "0"}, "empty home").exitCode, 3);
}

TEST_F(ArtworkCommand, FileThatIsNotThereIsSaid) {
  const Outcome missing = Artwork({Path("missing.itc2")}, "empty home");
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.errors, "tavrel: " + Path("missing.itc2") + ": there is no such file\n");
  EXPECT_EQ(Artwork({Path("here")}, "empty home").errors,
            "tavrel: " + Path("here") + ": this is a folder\n");
  EXPECT_THAT(Artwork({Write("other", "text")}, "empty home").errors,
              HasSubstr("is no artwork cache file"));
}

TEST_F(ArtworkCommand, LibraryFileBringsTheArtworkBesideIt) {
  AddSong(Named("A", "One", "x"), OnePicture());
  AddSong(Named("A", "Two", "x"), "damaged");
  WriteLibrary();
  fs::rename(Path("home/Music/iTunes"), Path("moved"));
  const Outcome outcome = Run(
      {"--library", Path("moved/iTunes Music Library.xml"), "artwork", "--all", "-o", Path("out")});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.output, HasSubstr(Path("moved/Album Artwork/0000000000000000-")));
  EXPECT_THAT(FolderNames(Path("out")), UnorderedElementsAre("A - One.png"));
}

TEST_F(ArtworkCommand, WrongCommandLinesAreRefused) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"--all"},
                                             {"--all", "-o", ""},
                                             {"--all", "--list", "-o", "x"},
                                             {"--all", "a", "-o", "x"},
                                             {"a", "b", "c"},
                                             {"a", "--per-song"},
                                             {"a", "--unclaimed"}}) {
    EXPECT_EQ(Artwork(arguments).exitCode, 2);
  }
}

TEST_F(ArtworkCommand, FolderThatCannotBeMadeOrFileThatCannotBeWrittenFails) {
  AddSong(Named("A", "One", "x"), OnePicture());
  WriteLibrary();
  Write("here/file", "");
  EXPECT_EQ(Artwork({"--all", "-o", "file"}).exitCode, 1);
  fs::create_directories(Path("here/out/A - One.png"));
  const Outcome outcome = Artwork({"--all", "--force", "-o", "out"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot write"));
  EXPECT_THAT(FolderNames(Path("here/out")), UnorderedElementsAre("A - One.png"));
}

TEST_F(ArtworkCommand, AFileThatMayNotGrowIsAMessageAndNothingIsHalfWritten) {
  AddSong(Named("A", "One", "x"), OnePicture());
  WriteLibrary();
  Command command;
  command.fileSize = 20;
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"artwork", "--all", "-o", Path("out")},
        {"artwork", "Music", "0", "-o", Path("out/x.png")}}) {
    std::vector<std::string> all{"--home", Path("home")};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = Run(all, command);
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("File too large"));
    EXPECT_THAT(FolderNames(Path("out")), IsEmpty());
  }
}

#if !TAVREL_SANITIZED  // which take more address space than there is
// Twelve songs of one album, each with a cover of its own.
TEST_F(ArtworkCommand, OneCoverIsInMemoryAtATime) {
  constexpr std::uint32_t kSize = 16 << 20;
  constexpr std::string_view kEnd("\0\0\0\0IEND\xAE\x42\x60\x82", 12);
  std::string picture = "\x89PNG\r\n\x1A\n" + test::Number(kSize) + "junk";
  picture.append(kSize + 4, '\0').append(kEnd);
  for (int i = 0; i < 12; ++i) AddSong(Named("A", "One", std::to_string(i)));
  Cache("0000000000000000-0000000000000011.itc2", CacheHeader() + Bytes({.image = picture}));
  for (int number = 12; number <= 22; ++number) {
    const std::string folder =
        Path("home/Music/iTunes/Album Artwork/0000000000000000-00000000000000");
    fs::create_hard_link(folder + "11.itc2", folder + std::to_string(number) + ".itc2");
  }
  WriteLibrary();
  Command command;
  command.addressSpace = rlim_t{140} << 20;
  const Outcome outcome =
      Run({"--home", Path("home"), "artwork", "--all", "--per-song", "-o", Path("out")}, command);
  EXPECT_EQ(outcome.output, "12 covers written\n") << outcome.errors;
}
#endif

TEST_F(ArtworkCommand, ASongThatIsNotThereIsToldWhereToLook) {
  AddSong(Named("A", "One", "x"));
  WriteLibrary();
  EXPECT_EQ(Artwork({"Music", "y"}).errors,
            "tavrel: the playlist has no song \"y\"\n  tavrel --home " + Path("home") +
                " songs Music shows positions and names.\n");
}

TEST_F(ArtworkCommand, ProgressIsShownOnATerminalUnlessItIsQuiet) {
  for (int i = 0; i < 3; ++i) AddSong(Named("A", "One", "x"), OnePicture());
  WriteLibrary();
  const auto printed = [this](Stream output, const std::vector<std::string>& more) {
    fs::remove_all(Path("out"));
    Command command;
    command.output = output;
    // The first file takes longer than the program waits before it shows how far it has come.
    command.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS},
                           {"FAULT_KIND", "write"},
                           {"FAULT_NUMBER", "0"},
                           {"FAULT_PAUSE", "110"}};
    std::vector<std::string> arguments{"--home",     Path("home"), "covers",   "--all",
                                       "--per-song", "-o",         Path("out")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = Run(arguments, command);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    return outcome.output;
  };
  EXPECT_THAT(
      printed(Stream::Terminal, {}),
      testing::AllOf(HasSubstr("] 1/1  "), testing::EndsWith("\r\x1b[K3 covers written\n")));
  EXPECT_EQ(printed(Stream::Terminal, {"-q"}), "3 covers written\n");
  EXPECT_EQ(printed(Stream::Pipe, {}), "3 covers written\n");
}

}  // namespace
}  // namespace tavrel::test
