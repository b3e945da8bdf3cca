#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/SongKeys.h"
#include "tests/support/Random.h"

namespace tavrel::host {
namespace {

// "| `name` | Key | type | what it is |"
std::vector<std::string> Cells(const std::string& row) {
  std::vector<std::string> cells;
  for (std::size_t at = row.find('|'); at != std::string::npos;) {
    const std::size_t next = row.find('|', at + 1);
    if (next == std::string::npos) break;
    std::string cell = row.substr(at + 1, next - at - 1);
    cell.erase(0, cell.find_first_not_of(" `"));
    cell.erase(cell.find_last_not_of(" `") + 1);
    cells.push_back(cell);
    at = next;
  }
  return cells;
}

TEST(Fields, AreThoseOfTheDocument) {
  const std::map<FieldType, std::string> types{{FieldType::Text, "text"},
                                               {FieldType::Number, "number"},
                                               {FieldType::Seconds, "seconds"},
                                               {FieldType::Date, "date"},
                                               {FieldType::Flag, "flag"}};
  std::ifstream document(TAVREL_FIELDS_DOCUMENT);
  std::size_t field = 0;
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("| `")) continue;
    const std::vector<std::string> cells = Cells(line);
    ASSERT_EQ(cells.size(), 4u) << line;
    ASSERT_LT(field, kFieldCount) << line;
    EXPECT_EQ(cells[0], kFields[field].name);
    EXPECT_EQ(cells[1], kFields[field].key);
    EXPECT_EQ(cells[2], types.at(kFields[field].type)) << line;
    EXPECT_NE(cells[3], "") << line;
    ++field;
  }
  EXPECT_EQ(field, kFieldCount);
}

TEST(Fields, AreFoundByTheirKeysAndNames) {
  const FieldKeys keys;
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    const auto field = static_cast<Field>(i);
    EXPECT_EQ(FindField(kFields[i].name), field);
    if (kFields[i].key.empty()) continue;
    EXPECT_EQ(keys.Find(kFields[i].key), field) << kFields[i].key;
  }
  EXPECT_EQ(FindField("ALBUMARTIST"), Field::AlbumArtist) << "case does not count";
  EXPECT_EQ(FindField(""), std::nullopt);
  EXPECT_EQ(FindField("names"), std::nullopt);
  for (const char* key : {"", "Track ID", "Nam", "Name ", "name", "Nbme"}) {
    EXPECT_EQ(keys.Find(key), std::nullopt) << key;
  }
}

TEST(SongKeys, AreNumberedAlikeWhateverOrderTheyComeIn) {
  std::vector<std::string> known{"Sort Name", "Purchased", "Sort", "Sort Name ", ""};
  for (const FieldFacts& field : kFields) known.emplace_back(field.key);
  OtherKeys others;
  SongKeys keys(&others);
  const FieldKeys fields;
  test::Random random(7);
  for (int round = 0; round < 5000; ++round) {
    const std::string& key = known[random.Below(known.size())];
    if (round == 1000) others.Add("Sort Name");
    if (round == 2000) others.Add("Purchased");
    const auto field = fields.Find(key);
    const auto other = others.Find(key);
    std::size_t wanted = other ? kFieldCount + *other : SongKeys::kUnknown;
    if (field) wanted = IndexOf(*field);
    ASSERT_EQ(keys.Find(key.c_str()), wanted) << key << " in round " << round;
  }
}

}  // namespace
}  // namespace tavrel::host
