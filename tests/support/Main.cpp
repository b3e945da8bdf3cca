// The main function of the test programs. A test may be skipped for what this processor lacks or what this user may not
// do, as root may, and for nothing else: everything else that is missing is a failure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string_view>

namespace {

class SkipWatch : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& test) override {
    const testing::TestResult& result = *test.result();
    for (int i = 0; i < result.total_part_count(); ++i) {
      const testing::TestPartResult& part = result.GetTestPartResult(i);
      if (!part.skipped()) continue;
      const std::string_view reason = part.message();
      const bool isLack = reason.find("this processor lacks ") != std::string_view::npos;
      const bool isRight = reason.find("this user may not ") != std::string_view::npos;
      if (isLack || isRight) continue;
      ADD_FAILURE()
          << "a test was skipped, though not for what this processor lacks or this user may not: "
          << reason;
      return;
    }
  }
};

}  // namespace

int main(int count, char** arguments) {
  // What a shell starts in the background ignores these, and so would all that tests start.
  for (const int signal : {SIGINT, SIGQUIT}) std::signal(signal, SIG_DFL);
  testing::InitGoogleMock(&count, arguments);
  testing::UnitTest::GetInstance()->listeners().Append(new SkipWatch);
  return RUN_ALL_TESTS();
}
