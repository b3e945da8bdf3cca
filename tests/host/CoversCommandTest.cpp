// tavrel covers: smaller, beside the songs, and of a song by its name alone.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "host/artwork/Pixels.h"
#include "tests/host/DecodedPicture.h"
#include "tests/host/Fixture.h"
#include "tests/support/CacheFiles.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

using Pixel = std::array<unsigned char, 4>;
constexpr Pixel kRed{255, 0, 0, 255};
constexpr Pixel kGreen{0, 255, 0, 255};
constexpr Pixel kBlue{0, 0, 255, 255};

std::string PngOfOneColour(std::int32_t width, std::int32_t height, Pixel colour) {
  host::Pixels pixels{width, height, {}};
  for (std::int32_t i = 0; i < width * height; ++i) {
    for (const unsigned char byte : colour) pixels.bytes += static_cast<char>(byte);
  }
  return PngOf(pixels);
}

std::string ImageBytes(std::uint32_t width, std::uint32_t height, Pixel colour) {
  return Bytes({.image = PngOfOneColour(static_cast<std::int32_t>(width),
                                        static_cast<std::int32_t>(height), colour),
                .width = width,
                .height = height});
}

class CoversCommand : public HostTest {
 protected:
  // file: below the folder "music"; it is made, unless the name is empty.
  void AddSong(const std::string& name, const std::string& album, const std::string& cache,
               const std::string& file = {}) {
    const int number = static_cast<int>(tracks_.size()) + 11;
    const std::string id = "00000000000000" + std::to_string(number);
    std::string properties = Property("Name", name) + Property("Artist", "A") +
                             Property("Album", album) + Property("Persistent ID", id);
    if (!file.empty()) {
      properties += Property("Location", "file://" + Write("music/" + file, "song"));
    }
    tracks_.push_back({number, properties});
    if (!cache.empty()) {
      Write("home/Music/iTunes/Album Artwork/0000000000000000-" + id + ".itc2",
            CacheHeader() + cache);
    }
  }
  Outcome Covers(std::vector<std::string> arguments, Command command = {}) const {
    Write("home/Music/iTunes/iTunes Music Library.xml", LibraryText(tracks_));
    arguments.insert(arguments.begin(), {"--home", Path("home"), "covers"});
    command.folder = Path("here");
    fs::create_directories(command.folder);
    return Run(arguments, command);
  }
  DecodedPicture PictureAt(const std::string& name) const {
    const auto picture = Decode(FileBytes(Path(name)));
    EXPECT_TRUE(picture.has_value()) << name;
    return picture.value_or(DecodedPicture{});
  }
  ino_t NumberOf(const std::string& name) const {
    struct stat state = {};
    EXPECT_EQ(::stat(Path(name).c_str(), &state), 0) << name;
    return state.st_ino;
  }

  std::vector<TrackText> tracks_;
};

TEST_F(CoversCommand, LongerSideIsAsLongAsAsked) {
  AddSong("x", "One", ImageBytes(64, 48, kRed));
  EXPECT_EQ(Covers({"--size", "32", "-o", "out"}).output, "1 cover written\n");
  const DecodedPicture small = PictureAt("here/out/A - One.png");
  EXPECT_EQ(small.width, 32u);
  EXPECT_EQ(small.height, 24u);
  EXPECT_EQ(small.pixels.at(0), kRed);
  EXPECT_EQ(Covers({"x", "--size", "16", "-o", "x.png"}).output, "x.png\n");
  EXPECT_EQ(PictureAt("here/x.png").width, 16u);
  const std::string file =
      Path("home/Music/iTunes/Album Artwork/0000000000000000-0000000000000011.itc2");
  EXPECT_EQ(Covers({file, "--size", "8", "-o", "y.png"}).exitCode, 0);
  EXPECT_EQ(PictureAt("here/y.png").width, 8u);
  Covers({"--size", "100", "-o", "large"});
  EXPECT_EQ(PictureAt("here/large/A - One.png").width, 64u) << "never larger";
}

TEST_F(CoversCommand, SmallestImageThatIsLargeEnoughIsMadeSmaller) {
  AddSong("x", "One",
          ImageBytes(256, 256, kGreen) + ImageBytes(64, 64, kRed) + ImageBytes(128, 128, kBlue));
  Covers({"--size", "100", "-o", "out"});
  EXPECT_EQ(PictureAt("here/out/A - One.png").width, 100u);
  EXPECT_EQ(PictureAt("here/out/A - One.png").pixels.at(0), kBlue);
  Covers({"--size", "300", "-o", "out", "--force"});
  EXPECT_EQ(PictureAt("here/out/A - One.png").width, 256u);
}

TEST_F(CoversCommand, PictureThatCannotBeMadeSmallerIsSaidAndMadeUpForByItsAlbum) {
  std::string damaged = ImageBytes(64, 64, kRed);
  damaged[damaged.find("IDAT") + 4] = 0;
  AddSong("x", "One", damaged);
  AddSong("y", "One", ImageBytes(64, 64, kBlue));
  EXPECT_EQ(Covers({"-o", "whole"}).exitCode, 0) << "as it is, nobody looks inside";
  const Outcome outcome = Covers({"--size", "32", "-o", "out"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "1 cover written\n");
  EXPECT_THAT(outcome.errors, HasSubstr("0000000000000011.itc2: the picture cannot be scaled: "));
  EXPECT_EQ(PictureAt("here/out/A - One.png").pixels.at(0), kBlue);
}

TEST_F(CoversCommand, FoldersOfAlbumsGetACoverAndOthersNone) {
  AddSong("x", "One", ImageBytes(64, 64, kRed), "one/disc1/x.mp3");
  AddSong("y", "One", "", "one/disc2/y.mp3");
  AddSong("z", "Two", ImageBytes(64, 64, kBlue), "flat/z.mp3");
  AddSong("u", "Three", ImageBytes(64, 64, kBlue), "flat/u.mp3");
  AddSong("v", "Four", ImageBytes(64, 64, kGreen), "four/v.mp3");
  AddSong("w", "Five", ImageBytes(64, 64, kGreen), "gone/w.mp3");
  fs::remove_all(Path("music/gone"));
  Write("music/four/cover.jpg", "mine");
  const Outcome dry = Covers({"--beside-songs", "-n"});
  EXPECT_THAT(dry.output, HasSubstr(Path("music/one/disc1/cover.png") + "\n"));
  EXPECT_THAT(dry.output, HasSubstr("2 covers would be written\n"));
  EXPECT_THAT(FolderNames(Path("music/one/disc2")), ElementsAre("y.mp3"));
  const Outcome outcome = Covers({"--beside-songs"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(outcome.errors, testing::ContainsRegex("^tavrel: [1-9] of [1-9] files found"));
  EXPECT_THAT(outcome.output, StartsWith("2 covers written\n1 file kept"));
  EXPECT_THAT(outcome.output, HasSubstr("1 folder left alone that hold"));
  EXPECT_EQ(PictureAt("music/one/disc1/cover.png").pixels.at(0), kRed);
  EXPECT_EQ(PictureAt("music/one/disc2/cover.png").pixels.at(0), kRed);
  EXPECT_THAT(FolderNames(Path("music/flat")), ElementsAre("u.mp3", "z.mp3"));
  EXPECT_THAT(FolderNames(Path("music/four")), ElementsAre("cover.jpg", "v.mp3"));
  EXPECT_FALSE(fs::exists(Path("music/gone")));
  Covers({"--beside-songs", "--force"});
  EXPECT_THAT(FolderNames(Path("music/four")), ElementsAre("cover.jpg", "cover.png", "v.mp3"));
}

TEST_F(CoversCommand, EqualCoversOfAnAlbumAreOneFile) {
  const std::string red = ImageBytes(64, 64, kRed);
  AddSong("a", "One", red);
  AddSong("b", "One", red);
  AddSong("c", "One", "");
  AddSong("d", "One", ImageBytes(64, 64, kBlue));
  AddSong("e", "Two", red);
  EXPECT_EQ(Covers({"--per-song", "-o", "out"}).output, "5 covers written\n");
  const ino_t first = NumberOf("here/out/A - One - a.png");
  EXPECT_EQ(NumberOf("here/out/A - One - b.png"), first);
  EXPECT_EQ(NumberOf("here/out/A - One - c.png"), first);
  EXPECT_NE(NumberOf("here/out/A - One - d.png"), first);
  EXPECT_NE(NumberOf("here/out/A - Two - e.png"), first) << "of another album";
  EXPECT_EQ(PictureAt("here/out/A - One - d.png").pixels.at(0), kBlue);
  Command refused;
  refused.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS},
                         {"FAULT_KIND", "link"},
                         {"FAULT_NUMBER", "0"},
                         {"FAULT_AFTER", "1"}};
  EXPECT_EQ(Covers({"--per-song", "-o", "copies"}, refused).output, "5 covers written\n");
  EXPECT_NE(NumberOf("here/copies/A - One - b.png"), NumberOf("here/copies/A - One - a.png"));
  EXPECT_EQ(PictureAt("here/copies/A - One - c.png").pixels.at(0), kRed);
}

TEST_F(CoversCommand, SongIsNamedAloneOrByItsId) {
  AddSong("\u00c9tude", "One", ImageBytes(64, 64, kRed));
  AddSong("Prelude", "Two", ImageBytes(64, 64, kGreen));
  AddSong("Prelude", "Three", ImageBytes(64, 64, kBlue));
  EXPECT_EQ(Covers({"e\u0301tude"}).output, "A - One - \u00c9tude.png\n");
  EXPECT_EQ(Covers({"id:0000000000000013"}).output, "A - Three - Prelude.png\n");
  const Outcome several = Covers({"Prelude"});
  EXPECT_EQ(several.exitCode, 1);
  EXPECT_EQ(several.errors,
            "tavrel: 2 songs are named \"Prelude\"; choose one of:\n"
            "  id:0000000000000012  A - Two\n  id:0000000000000013  A - Three\n");
  const Outcome none = Covers({"Waltz"});
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_THAT(none.errors, StartsWith("tavrel: there is no song \"Waltz\", and no file"));
  EXPECT_THAT(none.errors, EndsWith(" search Waltz finds songs by words.\n"));
  EXPECT_EQ(Covers({"gone.itc2"}).exitCode, 1);
}

TEST_F(CoversCommand, DryRunWritesNothing) {
  AddSong("x", "One", ImageBytes(64, 64, kRed));
  EXPECT_EQ(Covers({"-o", "out", "-n"}).output, "out/A - One.png\n1 cover would be written\n");
  EXPECT_EQ(Covers({"x", "-n"}).output, "A - One - x.png\n");
  EXPECT_THAT(FolderNames(Path("here")), ElementsAre());
}

TEST_F(CoversCommand, WrongCommandLinesAreRefused) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"--beside-songs", "-o", "x"},
                                             {"--beside-songs", "--per-song"},
                                             {"--beside-songs", "x"},
                                             {"--list"},
                                             {"--size", "0", "-o", "x"},
                                             {"--size", "-1", "-o", "x"}}) {
    EXPECT_EQ(Covers(arguments).exitCode, 2) << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace tavrel::test
