#include <gtest/gtest.h>
#include <malloc.h>

#include "library/TableAppender.h"
#include "system/Memory.h"

using tavrel::TableAppender;
namespace faults = tavrel::system::faults;

namespace {

struct Table {
  Table() = default;
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  ~Table() { tavrel::system::Release(array); }

  int** array = nullptr;
  std::int32_t capacity = 0;
  std::int32_t count = 0;
};

void Fill(Table& table, int* record, int records) {
  TableAppender<int> appender(table.array, table.capacity, table.count);
  for (int i = 0; i < records; ++i) {
    ASSERT_TRUE(appender.Reserve());
    appender.Append(record + i);
  }
}

}  // namespace

TEST(TableAppender, LeavesAnEmptyTableEmpty) {
  Table table;
  Fill(table, nullptr, 0);
  EXPECT_EQ(table.array, nullptr);
  EXPECT_EQ(table.capacity, 0);
  EXPECT_EQ(table.count, 0);
}

TEST(TableAppender, RaisesTheCapacityBy32WhenTheCountHasReachedIt) {
  Table table;
  int records[200] = {};
  for (int i = 0; i < 200; ++i) {
    const int before = table.count;
    Fill(table, records + i, 1);
    EXPECT_EQ(table.count, before + 1);
    EXPECT_EQ(table.capacity, before / 32 * 32 + 32);
  }
  for (int i = 0; i < 200; ++i) EXPECT_EQ(table.array[i], records + i);
}

TEST(TableAppender, RaisesTheCapacityBy32AlsoWithinOneCall) {
  int records[1000] = {};
  for (const int count : {1, 31, 32, 33, 64, 65, 96, 97, 999, 1000}) {
    Table table;
    Fill(table, records, count);
    EXPECT_EQ(table.count, count);
    EXPECT_EQ(table.capacity, (count + 31) / 32 * 32);
    for (int i = 0; i < count; ++i) ASSERT_EQ(table.array[i], records + i);
  }
}

TEST(TableAppender, MakesRoomOnceHoweverOftenItIsAsked) {
  Table table;
  TableAppender<int> appender(table.array, table.capacity, table.count);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(appender.Reserve());
  EXPECT_EQ(table.capacity, 32);
  EXPECT_EQ(table.count, 0);
}

TEST(TableAppender, GivesTheBlockTheSizeThatTheCapacityStates) {
  Table table;
  static int records[5000] = {};
  Fill(table, records, 5000);
  ASSERT_EQ(table.capacity, 5024);
  EXPECT_LT(malloc_usable_size(table.array), 5024 * sizeof(int*) + 4096);
}

TEST(TableAppender, AsksForFewBlocksHoweverManyRecords) {
  Table table;
  static int records[100000] = {};
  faults::FailAfter(INT64_MAX, false);
  Fill(table, records, 100000);
  const std::int64_t asked = faults::Asked();
  faults::Stop();
  EXPECT_LE(asked, 20);
}

TEST(TableAppender, ChangesNothingWhenMemoryIsExhausted) {
  Table table;
  int records[33] = {};
  Fill(table, records, 32);
  int** const array = table.array;
  faults::FailAfter(0, false);
  {
    TableAppender<int> appender(table.array, table.capacity, table.count);
    EXPECT_FALSE(appender.Reserve());
    EXPECT_FALSE(appender.Reserve());
  }
  faults::Stop();
  EXPECT_EQ(table.array, array);
  EXPECT_EQ(table.capacity, 32);
  EXPECT_EQ(table.count, 32);
  Fill(table, records + 32, 1);
  EXPECT_EQ(table.capacity, 64);
}
