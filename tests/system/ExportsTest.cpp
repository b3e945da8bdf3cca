// What the built library shows to the linker.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>

namespace {

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string output;
  std::array<char, 4096> piece;
  while (std::fgets(piece.data(), piece.size(), pipe.get()) != nullptr) output += piece.data();
  return output;
}

const std::string kLibrary = std::string(" '") + TAVREL_LIBRARY + "'";

// The defined dynamic symbols as "type name".
std::set<std::string> Symbols() {
  std::istringstream lines(OutputOf(TAVREL_NM " -D --defined-only" + kLibrary));
  std::set<std::string> symbols;
  for (std::string address, type, name; lines >> address >> type >> name;) {
    symbols.insert(type + " " + name);
  }
  return symbols;
}

std::set<std::string> Names() {
  std::set<std::string> names;
  for (const std::string& symbol : Symbols()) names.insert(symbol.substr(2));
  return names;
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

TEST(SharedObject, NeedsItsOwnDependenciesOnly) {
  std::istringstream lines(OutputOf(TAVREL_READELF " -d" + kLibrary));
  for (std::string line; std::getline(lines, line);) {
    if (line.find("(NEEDED)") == std::string::npos) continue;
    EXPECT_THAT(line, testing::ContainsRegex(
                          "lib(z|uriparser|utf8proc|stdc\\+\\+|gcc_s|c|m|asan|ubsan)\\.|ld-linux"));
  }
}

#endif
