// A whole life of the library while the system fails it: each call in turn, alone and with all that follow.
// Nothing crashes, hangs or is lost; what a host sees is a part of what it sees without a failure; and the
// next life is whole again.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fault/AllocationCount.h"
#include "tests/fault/FaultPlan.h"
#include "tests/fault/LibraryLife.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Soak.h"

namespace tavrel::test {
namespace {

// Every call there is, or the first, the last and some between.
std::vector<std::int64_t> CallsToFail(std::int64_t count) {
  constexpr std::int64_t kFirst = kSanitized ? 1 : 3;  // where every life's process is slow to fork
  constexpr std::int64_t kBetween = kSanitized ? 3 : 5;
  const std::int64_t stride = IsSoaking() ? 1 : count / kBetween + 1;
  std::vector<std::int64_t> calls;
  for (std::int64_t n = 0; n < count; n += n < kFirst ? 1 : stride) calls.push_back(n);
  if (calls.back() != count - 1) calls.push_back(count - 1);
  return calls;
}

constexpr int kErrors[] = {EIO, EACCES, EMFILE, ENOENT};

bool IsTurnOf(int error, std::size_t place) {
  const auto* found = std::find(std::begin(kErrors), std::end(kErrors), error);
  return found == std::end(kErrors) ||
         static_cast<std::size_t>(found - kErrors) == place % std::size(kErrors);
}

// Compares a life among failures with a whole one.
using Check = void (*)(const Life& life, const Life& whole);

class LifeFaults : public testing::Test {
 protected:
  // A life under the plan, for `check` to judge, and one without behind it. Nothing may be left of either.
  void LiveThrough(const FaultPlan& plan, Check check) {
    const HeldMemory held = Held();
    const std::size_t open = OpenDescriptors();
    {
      BeginFaults(plan);
      const Life life = scene_.Live();
      EndFaults();
      EXPECT_GE(FaultsMet(), 1);
      check(life, whole_);
    }
    EXPECT_EQ(Held(), held);
    EXPECT_EQ(OpenDescriptors(), open);
    EXPECT_TRUE(scene_.Live() == whole_) << "the next life";
    ++lives_;
    met_ += FaultsMet();
    if (HasFailure()) {
      FAIL() << "call " << plan.n << (plan.once ? " alone" : " and all after it") << ", error "
             << plan.error;
    }
  }

  // The same for each call of the kind.
  void LiveThroughEach(FaultPlan plan, const std::string& what, Check check) {
    lives_ = met_ = 0;
    const std::vector<std::int64_t> calls = CallsToFail(CallsOfALife(plan.kind));
    for (std::size_t i = 0; i < calls.size(); ++i) {
      if (!IsSoaking() && !IsTurnOf(plan.error, i)) continue;
      plan.n = calls[i];
      ASSERT_NO_FATAL_FAILURE(LiveThrough(plan, check)) << what;
    }
    PrintFigure(lives_, "lives with " + what + (plan.once ? " once, " : " and all after, ") +
                            std::to_string(met_) + " faults met");
  }

  // Each error for each call; without time for that, the calls take the errors in turn.
  void LiveThroughErrorsOf(CallKind kind, const std::string& what) {
    for (const bool once : {true, false}) {
      for (const int error : kErrors) {
        const std::string name = what + " failing with " + strerrorname_np(error);
        LiveThroughEach({kind, 0, once, error}, name, ExpectPartOf);
      }
    }
  }

 private:
  std::int64_t CallsOfALife(CallKind kind) {
    BeginFaults({kind, -1});
    static_cast<void>(scene_.Live());
    EndFaults();
    EXPECT_GT(CallsMade(kind), 0);
    return CallsMade(kind);
  }

  LifeScene scene_;
  const Life whole_ = scene_.Live();
  std::int64_t lives_ = 0;
  std::int64_t met_ = 0;
};

void ExpectWhole(const Life& life, const Life& whole) {
  EXPECT_TRUE(life == whole);
}

}  // namespace

TEST_F(LifeFaults, OfMemoryLeaveAPartAndTheNextLifeIsWhole) {
  for (const bool once : {true, false}) {
    LiveThroughEach({CallKind::Memory, 0, once, ENOMEM}, "an allocation failing", ExpectPartOf);
  }
}

TEST_F(LifeFaults, OfOpeningLeaveAPartAndTheNextLifeIsWhole) {
  LiveThroughErrorsOf(CallKind::Open, "opening a file");
}

TEST_F(LifeFaults, OfLookingAtFilesLeaveAPartAndTheNextLifeIsWhole) {
  LiveThroughErrorsOf(CallKind::Stat, "the state of a file");
}

TEST_F(LifeFaults, OfListingFoldersLeaveAPartAndTheNextLifeIsWhole) {
  LiveThroughErrorsOf(CallKind::List, "listing a folder");
}

TEST_F(LifeFaults, OfReadingLeaveAPartAndTheNextLifeIsWhole) {
  LiveThroughErrorsOf(CallKind::Read, "reading");
}

TEST_F(LifeFaults, OfMakingAProcessLeaveAPartAndTheNextLifeIsWhole) {
  LiveThroughEach({CallKind::Process, 0, true, EAGAIN}, "a process not made", ExpectPartOf);
}

TEST_F(LifeFaults, OfNoKindAreShortReads) {
  const auto one = [](std::size_t) { return std::size_t{1}; };
  const auto half = [](std::size_t asked) { return asked / 2; };
  const auto allButOne = [](std::size_t asked) { return asked - 1; };
  for (const bool once : {true, false}) {
    LiveThroughEach({CallKind::Read, 0, once, 0, one}, "a read of one byte", ExpectWhole);
    LiveThroughEach({CallKind::Read, 0, once, 0, half}, "a read of half", ExpectWhole);
    LiveThroughEach({CallKind::Read, 0, once, 0, allButOne}, "a read of all but one byte",
                    ExpectWhole);
  }
}

TEST_F(LifeFaults, OfNoKindIsAReadThatASignalInterrupts) {
  LiveThroughEach({CallKind::Read, 0, true, EINTR}, "a read interrupted", ExpectWhole);
}

TEST_F(LifeFaults, LeaveNoDescriptorForProgramsThatTheHostStarts) {
  EXPECT_EQ(InheritedDescriptors(), 0);
}

}  // namespace tavrel::test
