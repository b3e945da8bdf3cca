// Names and paths that any file system takes, out of texts that may hold anything.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/naming/FileNames.h"
#include "host/naming/FolderTree.h"
#include "tests/support/Sanitizers.h"

namespace tavrel::host {
namespace {

TEST(SafeName, LosesWhatIsNoPartOfAFileName) {
  EXPECT_EQ(SafeName("a/b"), "a_b");
  EXPECT_EQ(SafeName("..hidden"), "hidden");
  EXPECT_EQ(SafeName(" . . x "), "x");
  EXPECT_EQ(SafeName("a\x01\x7F"
                     "b\x1B[31m"),
            "ab[31m");
  EXPECT_EQ(SafeName("a\nb"), "a b");
  EXPECT_EQ(SafeName("caf\xE9"), "caf\uFFFD");
  EXPECT_EQ(SafeName("..."), "");
  EXPECT_EQ(SafeName(std::string_view("a\0b", 3)), "ab");
}

TEST(SafeName, LosesWhatAnyFileSystemRefuses) {
  EXPECT_EQ(SafeName("a?b:c\"d*e<f>g|h\\i/j"), "a_b_c_d_e_f_g_h_i_j");
  EXPECT_EQ(SafeName("Who?"), "Who_");
}

TEST(CutToBytes, CutsNoCharacterAndKeepsMarksWithTheirBase) {
  EXPECT_EQ(CutToBytes("abc", 3), "abc");
  EXPECT_EQ(CutToBytes("abc", 2), "ab");
  EXPECT_EQ(CutToBytes("a\u00e9b", 2), "a");
  EXPECT_EQ(CutToBytes("ae\u0301b", 2), "a");
  EXPECT_EQ(CutToBytes("ae\u0301b", 4), "ae\u0301");
  EXPECT_EQ(CutToBytes("\u7b8f\u7b8f", 5), "\u7b8f");
  EXPECT_EQ(CutToBytes("\U0001D11E", 3), "");
}

TEST(FileNames, AreUniqueWhateverTheCaseAndComposition) {
  FileNames names;
  EXPECT_EQ(names.Take("a", ".png"), "a.png");
  EXPECT_EQ(names.Take("A", ".png"), "A (2).png");
  EXPECT_EQ(names.Take("a", ".jpg"), "a.jpg");
  EXPECT_EQ(names.Take("\u00e9", ".png"), "\u00e9.png");
  EXPECT_EQ(names.Take("e\u0301", ".png"), "e\u0301 (2).png");
  const std::string longName(300, 'x');
  EXPECT_EQ(names.Take(longName, ".png").size(), 255U);
  const std::string second = names.Take(longName, ".png");
  EXPECT_EQ(second.size(), 255U);
  EXPECT_TRUE(second.ends_with(" (2).png"));
}

TEST(FileNames, SuitEveryFileSystem) {
  FileNames names;
  EXPECT_EQ(names.Take("Vol. 1. .", ".png"), "Vol. 1.png");
  EXPECT_EQ(names.Take("", ".png"), "Untitled.png");
  EXPECT_EQ(names.Take("con", ".png"), "_con.png");
  EXPECT_EQ(names.Take("Aux .x", ".png"), "_Aux .x.png");
  EXPECT_EQ(names.Take("LPT9.a.b", ".png"), "_LPT9.a.b.png");
  EXPECT_EQ(names.Take("COM\u00b9", ".png"), "_COM\u00b9.png");
  EXPECT_EQ(names.Take("concert", ".png"), "concert.png");
  EXPECT_EQ(names.Take("COM", ".png"), "COM.png");
  EXPECT_EQ(names.Take("com10", ".png"), "com10.png");
  EXPECT_EQ(names.Take("a\u200db", ".png"), "a\u200db.png");
  EXPECT_EQ(names.Take("ab", ".png"), "ab (2).png") << "some file systems see no difference";
  const std::string longName = std::string(250, 'x') + ".....";
  EXPECT_EQ(names.Take(longName, ".png"), std::string(250, 'x') + ".png");
}

TEST(FileNames, GoOnBehindANumberThatIsTaken) {
  FileNames names;
  EXPECT_EQ(names.Take("a (2)", ".png"), "a (2).png");
  EXPECT_EQ(names.Take("a", ".png"), "a.png");
  EXPECT_EQ(names.Take("a", ".png"), "a (3).png");
  EXPECT_EQ(names.Take("a (2)", ".png"), "a (2) (2).png");
  for (int number = 4; number <= 120; ++number) {
    EXPECT_EQ(names.Take("A", ".png"), "A (" + std::to_string(number) + ").png");
  }
}

// How many names are tried for `count` files whose names are hard to tell apart.
std::size_t NamesTried(int count, const std::function<std::string(int)>& stem) {
  FileNames names;
  for (int i = 0; i < count; ++i) (void)names.Take(stem(i), ".png");
  return names.Tried();
}

TEST(FileNames, TakeLinearWorkHoweverManyAreEqual) {
  constexpr int kFew = tavrel::test::kSlow ? 100 : 500;
  const std::vector<std::function<std::string(int)>> families{
      [](int) { return "cover"; },
      // Stems that look like the names that equal ones get.
      [](int i) { return i % 2 == 0 ? "a" : "a (" + std::to_string(2 + i / 2) + ")"; },
      // Stems that only become equal when they are cut.
      [](int i) { return std::string(300, 'x') + std::to_string(i); },
      // Pairs of stems, each of which is cut to the same for its number.
      [](int i) { return std::string(247, 'x') + std::to_string(1000 + i / 2); }};
  for (std::size_t family = 0; family < families.size(); ++family) {
    const std::size_t few = NamesTried(kFew, families[family]);
    const std::size_t many = NamesTried(8 * kFew, families[family]);
    EXPECT_LE(many, 9 * few) << family;
    EXPECT_LE(many, std::size_t{3 * 8 * kFew}) << family;
  }
}

TEST(FileNames, TakeAPlaceWhereCapitalLettersAreEqual) {
  FileNames names;
  EXPECT_EQ(names.Take("\u0131x", ""), "\u0131x");
  EXPECT_EQ(names.Take("Ix", ""), "Ix (2)") << "the capital letter of a dotless i";
  EXPECT_EQ(names.Take("stra\u00dfe", ""), "stra\u00dfe");
  EXPECT_EQ(names.Take("STRASSE", ""), "STRASSE (2)");
}

TEST(SafeExtension, IsAFewLettersAndDigits) {
  EXPECT_EQ(SafeExtension("/Music/a.b/Song.mp3"), ".mp3");
  EXPECT_EQ(SafeExtension("Song.M4A"), ".M4A");
  for (const char* none : {"", "Song", "/Music/a.b/Song", "Song.", "No. 5 in C", "a.b\\c",
                           "a.\u00e9", "a.mp3 ", "a.elevenchars"}) {
    EXPECT_EQ(SafeExtension(none), "") << none;
  }
}

TEST(FolderTree, BringsTogetherWhatIsInFoldersOfOneName) {
  FolderTree tree;
  const std::string queen = tree.Folder("", "Queen");
  EXPECT_EQ(queen, "Queen");
  EXPECT_EQ(tree.Folder("", "QUEEN"), "Queen");
  EXPECT_EQ(tree.Folder(queen, "Jazz"), "Queen/Jazz");
  EXPECT_EQ(tree.Folder(queen, "jazz"), "Queen/Jazz");
  EXPECT_EQ(tree.Folder("", "Jazz"), "Jazz");
  EXPECT_EQ(tree.Folder("", "e\u0301"), "e\u0301");
  EXPECT_EQ(tree.Folder("", "\u00e9"), "e\u0301");
  EXPECT_EQ(tree.NewFile("Queen/Jazz", "01 Mustapha", ".mp3"), "Queen/Jazz/01 Mustapha.mp3");
  EXPECT_EQ(tree.NewFile("Queen/Jazz", "01 mustapha", ".mp3"), "Queen/Jazz/01 mustapha (2).mp3");
  EXPECT_EQ(tree.NewFile("Queen", "01 Mustapha", ".mp3"), "Queen/01 Mustapha.mp3");
}

TEST(FolderTree, GivesFoldersOfTheirOwnToo) {
  FolderTree tree;
  EXPECT_EQ(tree.NewFolder("", "Mix"), "Mix");
  EXPECT_EQ(tree.NewFolder("", "mix"), "mix (2)");
  EXPECT_EQ(tree.NewFile("", "Mix", ""), "Mix (3)") << "a file and a folder share their names";
  EXPECT_EQ(tree.Folder("", "Mix"), "Mix (4)");
  EXPECT_EQ(tree.NewFolder("mix (2)", "Mix"), "mix (2)/Mix");
}

TEST(FolderTree, NeverLeadsOut) {
  FolderTree tree;
  const std::string folder = tree.Folder("", "..");
  EXPECT_EQ(folder, "Untitled");
  EXPECT_EQ(tree.Folder(folder, "/etc"), "Untitled/_etc");
  EXPECT_EQ(tree.NewFile(folder, "../../x", ".m3u8"), "Untitled/_.._x.m3u8");
  EXPECT_EQ(tree.NewFile(folder, "CON", ".m3u8"), "Untitled/_CON.m3u8");
  EXPECT_EQ(tree.NewFolder("", std::string(300, 'x')).size(), 255u);
}

}  // namespace
}  // namespace tavrel::host
