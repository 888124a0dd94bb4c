// How long a reader looks away while answers are owed, and that it does.
#include "platform/linux/accessibility/answer_pace.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr AnswerPace::Clock::time_point begin{};

TEST(AnswerPaceTest, ItIsThatOfTheLastAnswersAndTheTimeThatHalfOfTheOthersTake) {
  AnswerPace pace;
  pace.beginVolley();
  pace.hear(1, begin);
  pace.hear(4, begin + microseconds(200));
  EXPECT_EQ(pace.untilHalf(10), microseconds(250));
  pace.hear(2, begin + microseconds(220));
  EXPECT_EQ(pace.untilHalf(10), microseconds(50));
  EXPECT_EQ(pace.untilAll(10), microseconds(100));
}

// A program may be painting before its first answer.
TEST(AnswerPaceTest, TheTimeUntilTheFirstAnswerOfAVolleySaysNothing) {
  AnswerPace pace;
  pace.beginVolley();
  pace.hear(1, begin);
  pace.hear(1, begin + microseconds(30));
  pace.beginVolley();
  pace.hear(1, begin + milliseconds(500));
  EXPECT_EQ(pace.untilHalf(4), microseconds(60));
}

TEST(AnswerPaceTest, NoAnswersSayNothing) {
  AnswerPace pace;
  pace.beginVolley();
  pace.hear(1, begin);
  pace.hear(0, begin + milliseconds(7));
  pace.hear(2, begin + milliseconds(8));
  EXPECT_EQ(pace.untilHalf(1), milliseconds(1));  // at most; half of 4 ms
  EXPECT_EQ(pace.untilAll(1), milliseconds(1));
  pace.beginVolley();
  pace.hear(1, begin + milliseconds(9));
  pace.hear(8, begin + milliseconds(9) + microseconds(80));
  EXPECT_EQ(pace.untilHalf(32), microseconds(160));
}

class AnswersTest : public ReadingFixture {};

TEST_F(AnswersTest, WakeTheReaderLessOftenThanTheyCome) {
  FakeProgram program = programWithRows(300);
  program.toolkit = "Qt";  // nothing is remembered
  program.microsecondsPerCall = 100;
  start(program);
  const auto sleeps = [] {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
  };
  EXPECT_TRUE(eventually([&] {
    const int asked = player->counts().all;
    const long slept = sleeps();
    read({.seconds = 20, .messagingTimeout = 20});
    return (sleeps() - slept) * 3 < player->counts().all - asked;
  }));
}

}  // namespace
}  // namespace vellora
