#include <chrono>

#include "companion/companion_desk.h"

namespace vellora::e2e {
namespace {

class CompanionCommands : public CompanionOnTheDesk {
 protected:
  void SetUp() override {
    CompanionOnTheDesk::SetUp();
    startOverlay();
  }
};

// The song plays on meanwhile.
void expectPosition(double position, double from, std::chrono::steady_clock::time_point begin) {
  const std::chrono::duration<double> since = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(position, from - 0.5);
  EXPECT_LE(position, from + since.count() + 0.5);
}

TEST_F(CompanionCommands, SayWhatHappenedOnceItHas) {
  Answer answer = run({"next"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  EXPECT_EQ(answer.text.find("playing “Der Mond ist aufgegangen” by "), 0U) << answer.text;

  answer = run({"previous"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  EXPECT_NE(answer.text.find(" at 0:"), std::string::npos) << answer.text;

  const auto begin = std::chrono::steady_clock::now();
  answer = run({"seek", "0:20"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  EXPECT_NE(answer.text.find(" at 0:"), std::string::npos) << answer.text;
  expectPosition(nowPlaying()->position, 20, begin);

  answer = run({"seek", "-10"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  expectPosition(nowPlaying()->position, 10, begin);

  answer = run({"playpause"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  EXPECT_EQ(answer.text.find("paused in “"), 0U) << answer.text;
  EXPECT_FALSE(nowPlaying()->playing);
}

TEST_F(CompanionCommands, PlayFindsASongOfTheLibrary) {
  const auto begin = std::chrono::steady_clock::now();
  const Answer answer = run({"play", "der mond ist aufgegangen", "--at", "0:09"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  expectPosition(nowPlaying()->position, 9, begin);
  EXPECT_EQ(nowPlaying()->title, "Der Mond ist aufgegangen");
}

TEST_F(CompanionCommands, PlayOfASongThatIsNotThereSaysSo) {
  const Answer answer = run({"play", "No such song", "Nobody", "--patience", "2"});
  EXPECT_EQ(answer.status, 4);
  EXPECT_EQ(answer.text.find("vellora-companion: the player has no song \"No such song\""), 0U)
      << answer.text;
}

TEST_F(CompanionCommands, StatusSaysWhatPlaysAndWhatTheOverlaySays) {
  // The overlay's first tick tells what plays before it has a status line.
  ASSERT_TRUE(waitFor([&] { return status().has_value(); }));
  const Answer answer = run({"status"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  EXPECT_EQ(answer.text.find("playing “Au clair de la lune” by Traditionnel at 0:"), 0U)
      << answer.text;
  EXPECT_NE(answer.text.find("\noverlay: "), std::string::npos) << answer.text;
}

TEST_F(CompanionCommands, WorkBesideTheKeepingCompanion) {
  startCompanion();
  ASSERT_TRUE(waitFor([&] { return following(); }));
  const Answer answer = run({"next"});
  EXPECT_EQ(answer.status, 0) << answer.text;
  EXPECT_TRUE(waitFor([&] { return said("Der Mond ist aufgegangen"); }));
  EXPECT_TRUE(fileExists(exchange / syncRequestFileName));
}

TEST_F(CompanionCommands, WithoutAnOverlaySayThatNoneAnswers) {
  overlay->stop();
  Answer answer = run({"next"});
  EXPECT_EQ(answer.status, 3) << answer.text;
  EXPECT_EQ(answer.text.find("vellora-companion: no overlay answers"), 0U) << answer.text;
  EXPECT_FALSE(fileExists(exchange / commandFileName)) << "left for a later overlay";
  answer = run({"status"});
  EXPECT_EQ(answer.status, 3) << answer.text;
}

TEST_F(CompanionCommands, WithoutAPlayerSayThatNoneIsTold) {
  player->stop();
  const Answer answer = run({"playpause", "--patience", "1"});
  EXPECT_EQ(answer.status, 4) << answer.text;
  EXPECT_NE(answer.text.find("tells of no player"), std::string::npos) << answer.text;
}

}  // namespace
}  // namespace vellora::e2e
