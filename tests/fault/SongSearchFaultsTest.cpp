// What a search does when memory is exhausted.
#include <gtest/gtest.h>

#include <algorithm>

#include "agent/Exports.h"
#include "system/Memory.h"
#include "tests/support/SongLibrary.h"
#include "tests/support/Texts.h"

namespace {

using namespace tavrel::test;
namespace faults = tavrel::system::faults;

std::vector<LibraryTrack> Tracks() {
  const std::string marks = Repeated("\u0301\u0323", 100);
  return {{1, "Beat It", "Beat & It", "x"},
          {2, Join({"e", marks, "beat"}), "A &amp; B"},
          {3, "Dvo\u0159\u00E1k"},
          {4, "caf&#233;", "heartbeat"}};
}

const Terms kTerms = {"beat", "beat", "beat"};

// What a search does, memory or not: how many allocations were asked for.
template <class Search>
std::int64_t WithFault(std::int64_t successes, bool once, Search&& search) {
  faults::FailAfter(successes, once);
  search();
  const std::int64_t asked = faults::Asked();
  faults::Stop();
  return asked;
}

struct Calls {
  std::int32_t count = 0;
  std::vector<Call> calls = std::vector<Call>(16);
  std::size_t made = 0;
};

void SearchInto(Calls& calls) {
  SongInfo terms = {};
  char wanted[] = "beat";
  terms.name = terms.artist = terms.album = wanted;
  const auto keep = [](PlaylistRecord* playlist, std::int32_t index, void* context) {
    auto& kept = *static_cast<Calls*>(context);
    kept.calls[kept.made++] = {playlist, index};
    return std::int32_t{1};
  };
  calls.count = SearchSong(&terms, keep, &calls);
}

TEST(SongSearchFault, OneFailedAllocationChangesNoResult) {
  for (std::int64_t successes = 0;; ++successes) {
    const SongLibrary library(Tracks(), {{0, {4, 3, 2, 1}}});
    Calls calls;
    testing::internal::CaptureStderr();
    const std::int64_t asked = WithFault(successes, true, [&] { SearchInto(calls); });
    const std::string log = testing::internal::GetCapturedStderr();
    const Heard heard = Search(kTerms);
    EXPECT_EQ(calls.count, 3) << successes;
    EXPECT_EQ(heard.count, 3) << successes;
    EXPECT_EQ(log.find("no ending") != std::string::npos,
              heard.log.find("no ending") != std::string::npos);
    ASSERT_EQ(calls.made, 4u);
    calls.calls.resize(calls.made);
    EXPECT_EQ(calls.calls, heard.calls) << successes;
    if (asked <= successes) break;
    ASSERT_LT(successes, 100) << "the loop has an end";
  }
}

TEST(SongSearchFault, WithoutMemoryTheCallbackIsStillCalledForEveryTrack) {
  for (std::int64_t successes = 0;; ++successes) {
    const SongLibrary library(Tracks(), {{0, {4, 3, 2, 1}}});
    Calls calls;
    const std::int64_t asked = WithFault(successes, false, [&] { SearchInto(calls); });
    EXPECT_EQ(calls.made, 4u) << successes;
    EXPECT_LE(calls.count, 3);
    EXPECT_EQ(Search(kTerms).count, 3) << "once there is memory again";
    if (asked <= successes) break;
    ASSERT_LT(successes, 200) << "the loop has an end";
  }
}

std::vector<std::int32_t> FindInto(std::vector<std::int32_t>& room) {
  SongInfo terms = {};
  char wanted[] = "beat";
  terms.name = terms.artist = terms.album = wanted;
  const auto keep = [](std::int32_t index, void* context) {
    static_cast<std::vector<std::int32_t>*>(context)->push_back(index);
    return std::int32_t{1};
  };
  room.clear();
  const std::int32_t count = FindSongs(&terms, keep, &room);
  EXPECT_EQ(count, static_cast<std::int32_t>(room.size()));
  return room;
}

TEST(SongFindingFault, OneFailedAllocationChangesNoResult) {
  const std::vector<std::int32_t> whole = {0, 1, 3};
  for (std::int64_t successes = 0;; ++successes) {
    const SongLibrary library(Tracks());
    std::vector<std::int32_t> found;
    found.reserve(16);
    const std::int64_t asked = WithFault(successes, true, [&] { FindInto(found); });
    EXPECT_EQ(found, whole) << successes;
    if (asked <= successes) break;
    ASSERT_LT(successes, 100) << "the loop has an end";
  }
}

TEST(SongFindingFault, WithoutMemoryOnlySomeOfTheSongsAreFound) {
  const std::vector<std::int32_t> whole = {0, 1, 3};
  for (std::int64_t successes = 0;; ++successes) {
    const SongLibrary library(Tracks());
    std::vector<std::int32_t> found;
    found.reserve(16);
    const std::int64_t asked = WithFault(successes, false, [&] { FindInto(found); });
    EXPECT_TRUE(std::includes(whole.begin(), whole.end(), found.begin(), found.end())) << successes;
    EXPECT_EQ(FindInto(found), whole) << "once there is memory again";
    if (asked <= successes) break;
    ASSERT_LT(successes, 200) << "the loop has an end";
  }
}

TEST(SongSearchFault, ALaterSearchNeedsMemoryForItsTermsOnly) {
  const SongLibrary library(Tracks(), {{0, {4, 3, 2, 1}}});
  EXPECT_EQ(Search(kTerms).count, 3);
  Calls calls;
  EXPECT_EQ(WithFault(1000, false, [&] { SearchInto(calls); }), 3);
  EXPECT_EQ(calls.count, 3);
}

}  // namespace
