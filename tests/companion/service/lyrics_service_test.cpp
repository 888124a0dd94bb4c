#include "companion/service/lyrics_service.h"

#include <deque>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vellora::companion {
namespace {

using Outcome = Fetched::Outcome;

const WantedSong song{"Night Drive", "River Band", "Album", std::nullopt};
const WantedSong other{"Other", "River Band", "Album", std::nullopt};

constexpr const char* synced =
    R"({"trackName":"Night Drive","artistName":"River Band","syncedLyrics":"[00:01.00]a\n[00:02.00]b"})";
constexpr const char* plain =
    R"({"trackName":"Night Drive","artistName":"River Band","plainLyrics":"x\ny"})";

// A server whose answers are laid out beforehand, each there at the step after it was asked for.
struct Plan {
  std::deque<Fetched> answers;
  std::vector<std::string> asked;
  int cancelled = 0;
};
class PlannedFetch final : public Fetch {
 public:
  explicit PlannedFetch(Plan& plan) : plan_(plan) {}
  void start(const std::string& url) override {
    plan_.asked.push_back(url);
    running_ = true;
  }
  std::optional<Fetched> step() override {
    if (!running_ || plan_.answers.empty()) return std::nullopt;
    running_ = false;
    Fetched answer = plan_.answers.front();
    plan_.answers.pop_front();
    return answer;
  }
  void cancel() override {
    if (running_) ++plan_.cancelled;
    running_ = false;
  }

 private:
  Plan& plan_;
  bool running_ = false;
};

class Service : public testing::Test {
 protected:
  void SetUp() override { startAnew(); }
  void startAnew() {
    service = std::make_unique<LyricsService>(ServerAddress{"https://lrclib.net", "lrclib.net"},
                                              LyricsCache(folder / "lyrics", "lrclib.net"),
                                              std::make_unique<PlannedFetch>(plan));
  }
  void answer(int status, std::string body = R"({"code":404,"name":"TrackNotFound"})") {
    plan.answers.push_back({Outcome::answered, status, std::move(body), {}, {}});
  }
  void failWith(Outcome outcome) { plan.answers.push_back({outcome, 0, {}, {}, "why"}); }

  // What comes within so many seconds.
  std::optional<FoundLyrics> during(double seconds) {
    for (const double end = now + seconds; now < end; now += 0.1) {
      if (auto found = service->step(now)) return found;
    }
    return std::nullopt;
  }
  std::size_t asked() const { return plan.asked.size(); }

  TemporaryFolder folder;
  Plan plan;
  std::unique_ptr<LyricsService> service;
  double now = 1'000'000;
};

TEST_F(Service, AtRestItSaysWhatItDoesAndAsksNothing) {
  EXPECT_FALSE(during(10));
  EXPECT_EQ(asked(), 0U);
  EXPECT_EQ(service->report(),
            "lrclib.net is asked for lyrics that the folder lacks, by title, artist, album and "
            "length");
}

TEST_F(Service, SyncedLyricsComeWithOneRequest) {
  answer(200, synced);
  service->want(song);
  service->step(now);
  EXPECT_EQ(service->report(), "lrclib.net is asked for the lyrics");
  const auto found = during(2);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->from, "lrclib.net");
  ASSERT_EQ(found->lyrics.lines.size(), 2U);
  EXPECT_EQ(found->lyrics.lines[1].text, "b");
  EXPECT_EQ(found->lyrics.lines[1].time, 2);
  EXPECT_EQ(service->report(), "the lyrics come from lrclib.net");
  EXPECT_EQ(plan.asked,
            (std::vector<std::string>{"https://lrclib.net/api/get?track_name=Night%20Drive"
                                      "&artist_name=River%20Band&album_name=Album"}));
  EXPECT_FALSE(during(100)) << "once";
  EXPECT_EQ(asked(), 1U);
}

TEST_F(Service, WhatTheFirstRequestLacksIsSearchedFor) {
  answer(404);
  answer(200, "[" + std::string(synced) + "]");
  service->want(song);
  EXPECT_TRUE(during(2));
  EXPECT_EQ(plan.asked.back(),
            "https://lrclib.net/api/search?track_name=Night%20Drive&artist_name=River%20Band");
}

TEST_F(Service, SyncedLyricsOfTheSearchAreBetterThanPlainOnes) {
  answer(200, plain);
  answer(200, "[" + std::string(plain) + "," + synced + "]");
  service->want(song);
  EXPECT_TRUE(during(2).value().lyrics.timed());
}

TEST_F(Service, PlainLyricsAreBetterThanNone) {
  answer(200, plain);
  answer(200, "[]");
  service->want(song);
  const auto found = during(2);
  ASSERT_TRUE(found);
  EXPECT_FALSE(found->lyrics.timed());
  EXPECT_EQ(found->lyrics.lines.size(), 2U);
  EXPECT_TRUE(found->lyrics.problems.empty()) << "nobody can mend what a service has";
}

TEST_F(Service, PlainLyricsServeWhereTheSearchFailsButAreNotKept) {
  answer(200, plain);
  failWith(Outcome::timedOut);
  service->want(song);
  EXPECT_TRUE(during(2));
  startAnew();
  service->want(song);
  during(2);
  EXPECT_EQ(asked(), 3U);
}

TEST_F(Service, AnAnswerOfAnotherSongIsNotTaken) {
  answer(200, R"({"trackName":"Other","artistName":"River Band","syncedLyrics":"[00:01]a"})");
  answer(200, R"([{"trackName":"Other","artistName":"River Band","syncedLyrics":"[00:01]a"}])");
  service->want(song);
  EXPECT_FALSE(during(5));
  EXPECT_EQ(service->report(), "lrclib.net has no lyrics of this song");
}

// Of a gate before the network, or of another address than the service's.
TEST_F(Service, APageThatIsNotFoundSaysNothingOfTheSong) {
  answer(404, "<html>no such page</html>");
  answer(200, synced);
  service->want(song);
  EXPECT_FALSE(during(1));
  EXPECT_EQ(service->report(), "lrclib.net fails with HTTP status 404");
  EXPECT_TRUE(during(5)) << "asked again";
}

TEST_F(Service, AnInstrumentalPieceIsNotSearchedForFurther) {
  answer(200, R"({"trackName":"Night Drive","artistName":"River Band","instrumental":true,
                  "plainLyrics":"[Instrumental]"})");
  service->want(song);
  EXPECT_FALSE(during(5));
  EXPECT_EQ(asked(), 1U);
  EXPECT_EQ(service->report(), "lrclib.net says that this piece has no words");
}

TEST_F(Service, WhatIsKnownIsNotAskedAgain) {
  answer(200, synced);
  service->want(song);
  ASSERT_TRUE(during(2));
  startAnew();
  service->want(song);
  EXPECT_TRUE(service->step(now)) << "at once";
  EXPECT_EQ(asked(), 1U);
}

TEST_F(Service, ThatThereAreNoneIsKnownForAWeek) {
  answer(404);
  answer(404);
  service->want(song);
  EXPECT_FALSE(during(2));
  startAnew();
  service->want(song);
  EXPECT_FALSE(during(5));
  EXPECT_EQ(asked(), 2U);
  EXPECT_EQ(service->report(), "lrclib.net has no lyrics of this song");
  now += LyricsCache::patience;
  startAnew();
  answer(200, synced);
  service->want(song);
  EXPECT_TRUE(during(2));
}

TEST_F(Service, ASongWithoutAnArtistIsNotAskedFor) {
  service->want(WantedSong{"Night Drive", "", "", {}});
  EXPECT_FALSE(during(5));
  EXPECT_EQ(asked(), 0U);
  EXPECT_EQ(service->report(), "lrclib.net is asked only for songs with title and artist");
}

TEST_F(Service, WhoSkipsThroughSongsDoesNotAskForEach) {
  for (int i = 0; i < 10; ++i) {
    service->want(i % 2 == 0 ? song : other);
    during(0.25);
  }
  EXPECT_EQ(asked(), 0U);
  during(1);
  EXPECT_EQ(asked(), 1U);
}

TEST_F(Service, AnotherSongEndsTheRequest) {
  service->want(song);
  during(1);
  ASSERT_EQ(asked(), 1U);
  service->want(song);
  EXPECT_EQ(plan.cancelled, 0) << "the same one does not";
  service->want(std::nullopt);
  EXPECT_EQ(plan.cancelled, 1);
  answer(200, synced);
  EXPECT_FALSE(during(5));
}

// An hour of each failure: nothing hammers, and what works again is used again.
TEST_F(Service, AServerThatFailsIsLeftAloneForGrowingSpans) {
  const std::vector<std::pair<Fetched, std::string>> failures{
      {{Outcome::unreachable, 0, {}, {}, {}}, "cannot be reached: is there a network?"},
      {{Outcome::timedOut, 0, {}, {}, {}}, "does not answer in time"},
      {{Outcome::tooLarge, 0, {}, {}, {}}, "answers with more than is taken"},
      {{Outcome::broken, 0, {}, {}, "why"}, "fails: why"},
      {{Outcome::answered, 500, {}, {}, {}}, "fails with HTTP status 500"},
      {{Outcome::answered, 403, {}, {}, {}}, "fails with HTTP status 403"},
      {{Outcome::answered, 429, {}, {}, {}}, "asks to be left alone for a while"},
      {{Outcome::answered, 200, "<html>", {}, {}}, "answers with what is no LRCLIB record"}};
  for (const auto& [failure, words] : failures) {
    SCOPED_TRACE(words);
    plan = {};
    plan.answers.assign(100, failure);
    startAnew();
    service->want(song);
    EXPECT_FALSE(during(60));
    EXPECT_EQ(service->report(), "lrclib.net " + words);
    EXPECT_EQ(asked(), 5U) << "after 0, 2, 6, 14, 30 seconds";
    service->want(other);
    EXPECT_FALSE(during(3600));
    EXPECT_LE(asked(), 14U) << "another song asks no sooner";
    EXPECT_EQ(service->report(), "lrclib.net " + words) << "the same words all the time";
    plan.answers.assign(1, {Outcome::answered, 200, synced, {}, {}});
    service->want(song);
    EXPECT_TRUE(during(1000));
    std::filesystem::remove_all(folder / "lyrics");
  }
}

TEST_F(Service, IsUnderWayButWhileTheServerIsLeftAlone) {
  EXPECT_FALSE(service->underWay(now));
  service->want(song);
  EXPECT_TRUE(service->underWay(now));
  during(1);
  EXPECT_TRUE(service->underWay(now)) << "the server has not answered";
  failWith(Outcome::unreachable);
  service->step(now);
  EXPECT_FALSE(service->underWay(now + 1));
  EXPECT_TRUE(service->underWay(now + 2));
  answer(200, synced);
  EXPECT_TRUE(during(3));
  EXPECT_FALSE(service->underWay(now));
}

TEST_F(Service, AfterASuccessTheSpansBeginAnew) {
  for (int i = 0; i < 4; ++i) failWith(Outcome::unreachable);
  answer(200, synced);
  service->want(song);
  EXPECT_TRUE(during(60));
  failWith(Outcome::unreachable);
  service->want(other);
  during(1);
  const std::size_t before = asked();
  during(3);
  EXPECT_EQ(asked(), before + 1);
}

TEST_F(Service, AServerThatSaysWhenIsAskedThen) {
  plan.answers.push_back({Outcome::answered, 429, {}, 60, {}});
  answer(200, synced);
  service->want(song);
  EXPECT_FALSE(during(60));
  EXPECT_EQ(asked(), 1U);
  EXPECT_TRUE(during(3));
  plan.answers.push_back({Outcome::answered, 503, {}, 1e9, {}});
  answer(200, synced);
  std::filesystem::remove_all(folder / "lyrics");
  service->want(other);
  service->want(song);
  during(3590);
  EXPECT_EQ(asked(), 3U);
  EXPECT_TRUE(during(30)) << "but not in thirty years";
}

TEST_F(Service, WithoutANetworkWhatIsKnownServes) {
  answer(200, synced);
  service->want(song);
  ASSERT_TRUE(during(2));
  for (int i = 0; i < 20; ++i) failWith(Outcome::unreachable);
  service->want(other);
  EXPECT_FALSE(during(20));
  EXPECT_EQ(service->report(), "lrclib.net cannot be reached: is there a network?");
  service->want(song);
  EXPECT_TRUE(during(0.2));
  EXPECT_EQ(service->report(), "the lyrics come from lrclib.net");
  service->want(std::nullopt);
  EXPECT_EQ(service->report(), "") << "the folder has what plays";
}

}  // namespace
}  // namespace vellora::companion
