#include "exchange/publishing.h"

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/fake_clock.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

// An exchange folder, a clock, and a player that plays or does not.
class PublishingTest : public testing::Test {
 protected:
  void request(double age) { folder.write("sync.json", *encode(SyncRequest{clock.now() - age})); }
  bool requested() { return syncRequested(snapshot, clock, reader); }
  void publish() {
    publishNowPlaying(snapshot, clock, lastNowPlayingPublish, [this] {
      ++questions;
      lastPublishWhenAsked = lastNowPlayingPublish;
      return playing ? std::optional(NowPlayingTrack(clock.now(), "T", "A", "B", 1.5, true))
                     : std::nullopt;
    });
  }
  std::optional<NowPlayingTrack> published() const {
    return readExchangeFile<NowPlayingTrack>(folder / "nowplaying.json");
  }

  TemporaryFolder folder;
  FakeClock clock;
  SnapshotLocation snapshot = folder / "s.json";
  RecordReader<SyncRequest> reader;
  double lastNowPlayingPublish = distantPast;
  double lastPublishWhenAsked = 0;
  bool playing = true;
  int questions = 0;
};

TEST_F(PublishingTest, RequestCountsWhileItIsFresh) {
  EXPECT_FALSE(requested());
  request(24.9);
  EXPECT_TRUE(requested());
  request(25.0);
  EXPECT_FALSE(requested());
  request(30);
  EXPECT_FALSE(requested());
  request(0);
  EXPECT_TRUE(requested());
  request(-1.0);
  EXPECT_TRUE(requested());
  request(-1.5);
  EXPECT_FALSE(requested());
}

TEST_F(PublishingTest, RequestLapsesByItselfAndIsNeverChanged) {
  request(0);
  const std::string before = folder.read("sync.json");
  EXPECT_TRUE(requested());
  clock.advance(25);
  EXPECT_FALSE(requested());
  EXPECT_EQ(folder.read("sync.json"), before);
}

TEST_F(PublishingTest, MalformedRequestIsNone) {
  for (const char* content : {"", "x", "[]", "{}", R"({"UpdatedAt":1})", R"({"updatedAt":"1"})"}) {
    folder.write("sync.json", content);
    EXPECT_FALSE(requested()) << content;
    EXPECT_EQ(folder.read("sync.json"), content);
  }
  std::filesystem::remove(folder / "sync.json");
  std::filesystem::create_directory(folder / "sync.json");
  EXPECT_FALSE(requested());
}

TEST_F(PublishingTest, FirstAttemptGoesAheadAtOnce) {
  publish();
  ASSERT_TRUE(published());
  EXPECT_TRUE(*published() == NowPlayingTrack(clock.now(), "T", "A", "B", 1.5, true));
  EXPECT_EQ(lastNowPlayingPublish, clock.now());
}

TEST_F(PublishingTest, FileHasAllSevenKeys) {
  clock.set(1'700'000'000.25);
  publish();
  EXPECT_EQ(folder.read("nowplaying.json"),
            R"({"version":1,"updatedAt":1700000000.25,"title":"T","artist":"A","album":"B",)"
            R"("position":1.5,"playing":true})");
}

TEST_F(PublishingTest, AttemptsLieHalfASecondApart) {
  publish();
  clock.advance(0.3);
  publish();
  EXPECT_EQ(questions, 1);
  clock.set(lastNowPlayingPublish + 0.5);
  publish();
  EXPECT_EQ(questions, 2);
  EXPECT_EQ(published()->updatedAt, clock.now());
  clock.advance(0.5);
  publish();
  EXPECT_EQ(questions, 3);
}

TEST_F(PublishingTest, FileIsRewrittenThoughNothingButTheTimeHasChanged) {
  publish();
  const std::string before = folder.read("nowplaying.json");
  clock.advance(0.5);
  publish();
  EXPECT_NE(folder.read("nowplaying.json"), before);
}

TEST_F(PublishingTest, AttemptCountsBeforeThePlayerIsAsked) {
  playing = false;
  publish();
  EXPECT_EQ(lastPublishWhenAsked, clock.now());
  clock.advance(0.4);
  publish();
  EXPECT_EQ(questions, 1);
}

TEST_F(PublishingTest, StoppedPlayerLeavesNoFileAndAnOldOneAsItWas) {
  playing = false;
  publish();
  EXPECT_TRUE(folder.names().empty());
  folder.write("nowplaying.json", "old");
  clock.advance(1);
  publish();
  EXPECT_EQ(questions, 2);
  EXPECT_EQ(folder.read("nowplaying.json"), "old");
}

TEST_F(PublishingTest, ClockThatIsSetBackSilencesPublishingUntilItHasCaughtUp) {
  publish();
  const double last = clock.now();
  clock.set(last - 100);
  publish();
  clock.set(last + 0.49);
  publish();
  EXPECT_EQ(questions, 1);
  clock.set(last + 0.5);
  publish();
  EXPECT_EQ(questions, 2);
}

TEST_F(PublishingTest, WithoutALocationNothingIsAskedOrWritten) {
  request(0);
  snapshot = std::nullopt;
  EXPECT_FALSE(requested());
  publish();
  EXPECT_EQ(questions, 0);
  EXPECT_EQ(lastNowPlayingPublish, distantPast);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"sync.json"});
}

TEST_F(PublishingTest, FailedWritingIsSwallowedAndCountsAsAnAttempt) {
  snapshot = folder / "missing/s.json";
  publish();
  EXPECT_EQ(questions, 1);
  EXPECT_TRUE(folder.names().empty());
  publish();
  EXPECT_EQ(questions, 1);
}

TEST_F(PublishingTest, NewLocationCountsAtOnce) {
  std::filesystem::create_directory(folder / "other");
  request(0);
  publish();
  snapshot = folder / "other/s.json";
  EXPECT_FALSE(requested());
  clock.advance(0.5);
  publish();
  EXPECT_TRUE(folder.has("other/nowplaying.json"));
}

TEST_F(PublishingTest, DistantPastLiesBeforeEveryClock) {
  EXPECT_EQ(nowPlayingPublishInterval, 0.5);
  clock.set(0);
  publish();
  EXPECT_EQ(questions, 1);
}

}  // namespace
}  // namespace vellora
