#include "contracts/player_watch_contract.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>

namespace vellora {
namespace {

// What no answer takes on the busiest machine.
constexpr std::chrono::seconds longest{20};
constexpr int rounds = 100;  // of looks, as many as any answer needs

const PlayerWatchSubject::Playing sakura{"Sakura", "Choir", "Spring", 83.25, true};
const PlayerWatchSubject::Playing moon{"Der Mond", "Anna", "", 0, true};

// Looks as often as the watch wants it, on a clock of the test's own.
class Looking {
 public:
  explicit Looking(PlayerWatchSubject& subject) : subject_(subject) {}

  std::optional<HeardTrack> look() {
    now += std::max(subject_.watch().pause(now), 0.001);
    auto heard = subject_.watch().look(now);
    subject_.settle();
    return heard;
  }
  bool hears(const std::function<bool(const std::optional<HeardTrack>&)>& condition) {
    const auto begin = std::chrono::steady_clock::now();
    while (!condition(look())) {
      if (std::chrono::steady_clock::now() - begin > longest) return false;
    }
    return true;
  }
  bool hears(const std::string& title) {
    return hears([&](const auto& heard) { return (heard ? heard->track.title : "") == title; });
  }
  bool keepsHearing(const std::string& title) {
    for (int i = 0; i < rounds; ++i) {
      const auto heard = look();
      if ((heard ? heard->track.title : "") != title) return false;
    }
    return true;
  }

  double now = 1'000'000;

 private:
  PlayerWatchSubject& subject_;
};

}  // namespace

TEST_P(PlayerWatchContract, TellsWhatAPlayerPlaysAsOfWhen) {
  Looking looking(*subject);
  subject->start("any", sakura);
  ASSERT_TRUE(looking.hears("Sakura"));
  const auto heard = looking.look();
  ASSERT_TRUE(heard);
  EXPECT_EQ(heard->player, "any");
  EXPECT_EQ(heard->track.artist, "Choir");
  EXPECT_EQ(heard->track.album, "Spring");
  EXPECT_EQ(heard->track.position, 83.25);
  EXPECT_TRUE(heard->track.playing);
  EXPECT_TRUE(heard->track.isUsable(looking.now));
}

TEST_P(PlayerWatchContract, TellsNothingWithoutAPlayer) {
  EXPECT_TRUE(Looking(*subject).keepsHearing(""));
}

TEST_P(PlayerWatchContract, OfSeveralItIsTheOneThatWasToldOfLastAsLongAsItPlays) {
  Looking looking(*subject);
  subject->start("m", moon);
  ASSERT_TRUE(looking.hears("Der Mond"));
  subject->start("a", sakura);
  EXPECT_TRUE(looking.keepsHearing("Der Mond"));
  subject->end("m");
  EXPECT_TRUE(looking.hears("Sakura"));
  subject->end("a");
  EXPECT_TRUE(looking.hears(""));
}

TEST_P(PlayerWatchContract, ThenAnotherThatPlaysThenThatOneWhileItIsPaused) {
  Looking looking(*subject);
  subject->start("m", moon);
  ASSERT_TRUE(looking.hears("Der Mond"));
  subject->pause("m");
  EXPECT_TRUE(looking.hears([](const auto& heard) { return heard && !heard->track.playing; }));
  EXPECT_TRUE(looking.keepsHearing("Der Mond"));
  subject->start("z", sakura);
  EXPECT_TRUE(looking.hears("Sakura"));
}

TEST_P(PlayerWatchContract, APlayerThatDoesNotAnswerCountsAsGoneUntilItAnswers) {
  Looking looking(*subject);
  subject->start("a", sakura);
  ASSERT_TRUE(looking.hears("Sakura"));
  subject->hang("a");
  const double since = looking.now;
  EXPECT_TRUE(looking.hears(""));
  EXPECT_GT(looking.now - since, 2) << "seconds";
  subject->wake("a");
  EXPECT_TRUE(looking.hears("Sakura"));
}

TEST_P(PlayerWatchContract, NeverWaits) {
  Looking looking(*subject);
  subject->start("a", sakura);
  ASSERT_TRUE(looking.hears("Sakura"));
  subject->hang("a");
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < rounds; ++i) subject->watch().look(looking.now += 0.1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, longest);
}

TEST_P(PlayerWatchContract, BetweenLooksNothingHappens) {
  Looking looking(*subject);
  subject->start("a", sakura);
  ASSERT_TRUE(looking.hears("Sakura"));
  // Many times at one moment: what is due was done at the first.
  subject->watch().look(looking.now);
  const double pause = subject->watch().pause(looking.now);
  for (int i = 0; i < rounds; ++i) subject->watch().look(looking.now);
  EXPECT_GT(pause, 0);
  EXPECT_GT(subject->watch().pause(looking.now), 0);
}

TEST_P(PlayerWatchContract, AClockThatIsSetBackKeepsNothingWaiting) {
  Looking looking(*subject);
  subject->start("a", sakura);
  ASSERT_TRUE(looking.hears("Sakura"));
  looking.now -= 1000;
  EXPECT_TRUE(looking.hears("Sakura"));
  EXPECT_LT(looking.now, 1'000'000) << "and not only when the clock is where it was";
}

}  // namespace vellora
