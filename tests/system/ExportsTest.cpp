// What the built library shows to the linker.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "tests/support/LoadedLibrary.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryHome.h"

namespace {

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string output;
  std::array<char, 4096> piece;
  while (std::fgets(piece.data(), piece.size(), pipe.get()) != nullptr) output += piece.data();
  return output;
}

const std::string kLibrary = std::string(" '") + TAVREL_LIBRARY + "'";

// What stands behind the name of every symbol, where symbols have versions.
#if defined(__linux__)
const std::string kVersion = "TAVREL_" TAVREL_MAJOR;
const std::string kSuffix = "@@" + kVersion;
#else
const std::string kVersion;
const std::string kSuffix;
#endif

// The defined dynamic symbols as "type name"; the version's own name is none of them.
std::set<std::string> Symbols() {
  std::istringstream lines(OutputOf(TAVREL_NM " -D --defined-only" + kLibrary));
  std::set<std::string> symbols;
  for (std::string address, type, name; lines >> address >> type >> name;) {
    // Tools differ in whether they say that the version's name is of that version.
    if (name != kVersion && name != kVersion + kSuffix) symbols.insert(type + " " + name);
  }
  return symbols;
}

std::set<std::string> Names() {
  std::set<std::string> names;
  for (const std::string& symbol : Symbols()) names.insert(symbol.substr(2, symbol.find('@') - 2));
  return names;
}

std::set<std::string> NeededLibraries() {
  std::istringstream lines(OutputOf(TAVREL_READELF " -d" + kLibrary));
  std::set<std::string> needed;
  for (std::string line; std::getline(lines, line);) {
    if (line.find("(NEEDED)") == std::string::npos) continue;
    const std::size_t name = line.find('[') + 1;
    needed.insert(line.substr(name, line.find(".so", name) - name));
  }
  return needed;
}

void ReadList(const std::string& file, std::set<std::string>& names) {
  std::ifstream list(std::string(TAVREL_EXPORTS) + "/" + file);
  ASSERT_TRUE(list.is_open()) << file;
  for (std::string line; std::getline(list, line);) {
    if (line.empty() || line[0] == '#') continue;
    EXPECT_TRUE(names.insert(line).second) << line << " is listed twice";
  }
}

}  // namespace

TEST(Exports, AreExactlyTheListedNames) {
  std::set<std::string> listed;
  ReadList("interface.txt", listed);
  ReadList("additions.txt", listed);
  EXPECT_GE(listed.size(), 31u);
  EXPECT_EQ(Names(), listed);
}

TEST(Exports, HoldNoUniqueAndNoWeakSymbol) {
  ASSERT_FALSE(Symbols().empty());
  for (const std::string& symbol : Symbols()) {
    EXPECT_THAT(symbol[0], testing::AnyOf('T', 'D', 'B', 'R')) << symbol;
  }
}

TEST(Exports, CarryTheMajorVersion) {
  ASSERT_FALSE(Symbols().empty());
  for (const std::string& symbol : Symbols()) EXPECT_THAT(symbol, testing::EndsWith(kSuffix));
}

// The functions and the data: g_pGlobal and the tables are asked for like this by hosts.
TEST(Exports, AreFoundByTheirBareNames) {
  const tavrel::test::TemporaryHome home;
  const tavrel::test::LoadedLibrary library(home.path());
  for (const std::string& name : Names())
    EXPECT_NE(library.Get<void*>(name.c_str()), nullptr) << name;
}

TEST(Exports, AdditionsStandInAListOfTheirOwn) {
  std::set<std::string> additions;
  ReadList("additions.txt", additions);
  EXPECT_EQ(additions.count("OpenAllSongs"), 1u);
}

#if defined(__linux__)

TEST(SharedObject, NamesItselfWithItsMajorVersion) {
  const std::string dynamic = OutputOf(TAVREL_READELF " -d" + kLibrary);
  EXPECT_THAT(dynamic, testing::HasSubstr("Library soname: [libTavrel.so." TAVREL_MAJOR "]"));
}

TEST(SharedObject, IsBoundAtLoadAndReadOnlyAfterwards) {
  const std::string dynamic = OutputOf(TAVREL_READELF " -d" + kLibrary);
  EXPECT_THAT(dynamic, testing::AnyOf(testing::HasSubstr("BIND_NOW"), testing::HasSubstr("NOW")));
  EXPECT_THAT(OutputOf(TAVREL_READELF " -lW" + kLibrary), testing::HasSubstr("GNU_RELRO"));
  EXPECT_THAT(dynamic, testing::Not(testing::HasSubstr("TEXTREL")));
  EXPECT_THAT(dynamic, testing::Not(testing::HasSubstr("RPATH")));
  EXPECT_THAT(dynamic, testing::Not(testing::HasSubstr("RUNPATH")));
}

// What reads file URLs, what folds texts, and what C++ itself takes. Nothing that only programs use.
TEST(SharedObject, NeedsWhatItCallsAndNothingElse) {
  const std::set<std::string> expected = {"liburiparser", "libutf8proc", "libstdc++", "libgcc_s",
                                          "libc"};
  std::set<std::string> needed = NeededLibraries();
  if (tavrel::test::kSanitized) {
    for (const char* sanitizers : {"libm", "ld-linux-x86-64", "libasan", "libubsan"}) {
      needed.erase(sanitizers);
    }
  }
  EXPECT_EQ(needed, expected);
}

#if !TAVREL_SANITIZED  // sanitizers relocate whatever they look after
// What the loader does before the library's own work begins: 130 relocations when this was written.
TEST(SharedObject, KeepsTheLoaderBusyForAMomentOnly) {
  const std::string relocations = OutputOf(TAVREL_READELF " -rW" + kLibrary);
  const auto lines = std::count(relocations.begin(), relocations.end(), '\n');
  EXPECT_GT(lines, 20);
  EXPECT_LT(lines, 160);
}
#endif

#endif
