#include "exchange/records/records.h"

#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace vellora {
namespace {

constexpr double now = 1'700'000'000.0;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

OverlaySnapshot snapshotAt(double updatedAt) {
  return {1, updatedAt, true, "Title", "Artist", 32, 0, {}};
}

NowPlayingTrack trackAt(double updatedAt, bool playing = true) {
  return {updatedAt, "Title", "Artist", "Album", 42.5, playing};
}

TEST(OverlaySnapshotTest, OnlyVersion1IsUsable) {
  OverlaySnapshot snapshot = snapshotAt(now);
  EXPECT_TRUE(snapshot.isUsable(now));
  for (const std::int64_t version : {-1, 0, 2}) {
    snapshot.version = version;
    EXPECT_FALSE(snapshot.isUsable(now)) << version;
  }
}

TEST(OverlaySnapshotTest, SnapshotThatIsNotEnabledIsNeverUsable) {
  OverlaySnapshot snapshot = snapshotAt(now);
  snapshot.enabled = false;
  EXPECT_FALSE(snapshot.isUsable(now));
}

TEST(OverlaySnapshotTest, SnapshotExactlySixSecondsOldIsNotUsable) {
  EXPECT_FALSE(snapshotAt(now - 6.0).isUsable(now));
  EXPECT_TRUE(snapshotAt(now - 5.999).isUsable(now));
}

TEST(OverlaySnapshotTest, SnapshotAtMostOneSecondInTheFutureIsUsable) {
  EXPECT_TRUE(snapshotAt(now + 1.0).isUsable(now));
  EXPECT_FALSE(snapshotAt(now + 1.001).isUsable(now));
}

TEST(NowPlayingTrackTest, ConstructorAlwaysSetsVersion1) {
  EXPECT_EQ(trackAt(now).version, 1);
  const NowPlayingTrack brief(now, "T", "A", "B");
  EXPECT_EQ(brief.position, 0);
  EXPECT_FALSE(brief.playing);
}

TEST(NowPlayingTrackTest, TrackExactlyEightSecondsOldIsNotUsable) {
  EXPECT_FALSE(trackAt(now - 8.0).isUsable(now));
  EXPECT_TRUE(trackAt(now - 7.999).isUsable(now));
  EXPECT_TRUE(trackAt(now + 1.0).isUsable(now));
  EXPECT_FALSE(trackAt(now + 1.001).isUsable(now));
}

TEST(NowPlayingTrackTest, TrackOfAnotherVersionIsNotUsable) {
  NowPlayingTrack track = trackAt(now);
  track.version = 2;
  EXPECT_FALSE(track.isUsable(now));
  EXPECT_EQ(track.playbackTime(now), std::nullopt);
}

TEST(NowPlayingTrackTest, TrackWithoutTitleIsNeverUsableAndHasNoPlaybackTime) {
  NowPlayingTrack track = trackAt(now);
  track.title = "";
  EXPECT_FALSE(track.isUsable(now));
  EXPECT_EQ(track.playbackTime(now), std::nullopt);
  track.title = " ";
  EXPECT_TRUE(track.isUsable(now));
}

TEST(NowPlayingTrackTest, PlaybackTimeOfAPlayingTrackMovesOn) {
  EXPECT_EQ(trackAt(now - 3).playbackTime(now), 45.5);
}

TEST(NowPlayingTrackTest, PlaybackTimeOfAPausedTrackStaysAtItsPosition) {
  EXPECT_EQ(trackAt(now - 3, false).playbackTime(now), 42.5);
}

TEST(NowPlayingTrackTest, PlaybackTimeNeverMovesBackForATrackFromTheFuture) {
  EXPECT_EQ(trackAt(now + 0.5).playbackTime(now), 42.5);
}

TEST(SyncRequestTest, RequestExactly25SecondsOldIsNotActive) {
  EXPECT_TRUE(SyncRequest{now - 24.9}.isActive(now));
  EXPECT_FALSE(SyncRequest{now - 25.0}.isActive(now));
  EXPECT_TRUE(SyncRequest{now + 1.0}.isActive(now));
  EXPECT_FALSE(SyncRequest{now + 1.001}.isActive(now));
}

TEST(MusicCommandTest, CommandExactly20SecondsOldIsNotFresh) {
  const auto commandAt = [](double requestedAt) {
    return MusicCommand(requestedAt, MusicCommand::Action::next, "");
  };
  EXPECT_TRUE(commandAt(now - 19.9).isFresh(now));
  EXPECT_FALSE(commandAt(now - 20.0).isFresh(now));
  EXPECT_TRUE(commandAt(now + 1.0).isFresh(now));
  EXPECT_FALSE(commandAt(now + 1.001).isFresh(now));
}

TEST(RecordsTest, NoPredicateHoldsForATimeThatIsNotANumber) {
  EXPECT_FALSE(snapshotAt(notANumber).isUsable(now));
  EXPECT_FALSE(snapshotAt(now).isUsable(notANumber));
  EXPECT_FALSE(trackAt(notANumber).isUsable(now));
  EXPECT_FALSE(trackAt(now).isUsable(notANumber));
  EXPECT_EQ(trackAt(notANumber).playbackTime(now), std::nullopt);
  EXPECT_FALSE(SyncRequest{notANumber}.isActive(now));
  EXPECT_FALSE(SyncRequest{now}.isActive(notANumber));
  const MusicCommand command(notANumber, MusicCommand::Action::play, "T");
  EXPECT_FALSE(command.isFresh(now));
  EXPECT_FALSE(MusicCommand(now, MusicCommand::Action::play, "T").isFresh(notANumber));
}

TEST(MusicCommandTest, ConstructorLeavesArtistEmptyAndPositionZero) {
  const MusicCommand command(now, MusicCommand::Action::play, "T");
  EXPECT_EQ(command.artist, "");
  EXPECT_EQ(command.position, 0);
}

TEST(MusicCommandTest, ActionsAreNamedExactly) {
  using Action = MusicCommand::Action;
  EXPECT_EQ(MusicCommand::name(Action::play), "play");
  EXPECT_EQ(MusicCommand::name(Action::seek), "seek");
  EXPECT_EQ(MusicCommand::name(Action::playPause), "playPause");
  EXPECT_EQ(MusicCommand::name(Action::previous), "previous");
  EXPECT_EQ(MusicCommand::name(Action::next), "next");
  EXPECT_EQ(MusicCommand::actionNamed("play"), Action::play);
  EXPECT_EQ(MusicCommand::actionNamed("seek"), Action::seek);
  EXPECT_EQ(MusicCommand::actionNamed("playPause"), Action::playPause);
  EXPECT_EQ(MusicCommand::actionNamed("previous"), Action::previous);
  EXPECT_EQ(MusicCommand::actionNamed("next"), Action::next);
  for (const char* name : {"pause", "Play", "playpause", "PLAY", "play ", "", "Next"}) {
    EXPECT_EQ(MusicCommand::actionNamed(name), std::nullopt) << name;
  }
}

TEST(RecordsTest, TextsAreEqualByCanonicalEquivalence) {
  EXPECT_TRUE((OverlayLine{"caf\u00E9", "t"} == OverlayLine{"cafe\u0301", "t"}));
  EXPECT_TRUE((OverlayLine{"s", "caf\u00E9"} == OverlayLine{"s", "cafe\u0301"}));
  EXPECT_FALSE((OverlayLine{"a", "t"} == OverlayLine{"b", "t"}));
  EXPECT_FALSE((OverlayLine{"s", "t"} == OverlayLine{"s", "u"}));
}

TEST(RecordsTest, EveryFieldOfATrackCounts) {
  const NowPlayingTrack track = trackAt(now);
  const auto differsBy = [&](auto change) {
    NowPlayingTrack other = track;
    change(other);
    return !(other == track);
  };
  EXPECT_TRUE(track == trackAt(now));
  EXPECT_TRUE(differsBy([](auto& t) { t.version = 2; }));
  EXPECT_TRUE(differsBy([](auto& t) { t.updatedAt += 1; }));
  EXPECT_TRUE(differsBy([](auto& t) { t.title = "x"; }));
  EXPECT_TRUE(differsBy([](auto& t) { t.artist = "x"; }));
  EXPECT_TRUE(differsBy([](auto& t) { t.album = "x"; }));
  EXPECT_TRUE(differsBy([](auto& t) { t.position = 1; }));
  EXPECT_TRUE(differsBy([](auto& t) { t.playing = false; }));
  EXPECT_FALSE(differsBy([](auto& t) { t.position = 42.5; }));
}

TEST(RecordsTest, EveryFieldOfACommandCounts) {
  const MusicCommand command(now, MusicCommand::Action::seek, "T", "\u00E9", 3);
  const auto differsBy = [&](auto change) {
    MusicCommand other = command;
    change(other);
    return !(other == command);
  };
  EXPECT_TRUE(differsBy([](auto& c) { c.requestedAt += 1; }));
  EXPECT_TRUE(differsBy([](auto& c) { c.action = MusicCommand::Action::play; }));
  EXPECT_TRUE(differsBy([](auto& c) { c.title = "x"; }));
  EXPECT_TRUE(differsBy([](auto& c) { c.artist = "x"; }));
  EXPECT_TRUE(differsBy([](auto& c) { c.position = 0; }));
  EXPECT_FALSE(differsBy([](auto& c) { c.artist = "e\u0301"; }));
}

TEST(RecordsTest, NumbersAreEqualByValue) {
  NowPlayingTrack a = trackAt(now);
  NowPlayingTrack b = trackAt(now);
  a.position = 0.0;
  b.position = -0.0;
  EXPECT_TRUE(a == b);
  a.position = b.position = notANumber;
  EXPECT_FALSE(a == b);
}

TEST(RecordsTest, FileNamesAndAgesAreTheAgreedOnes) {
  EXPECT_EQ(nowPlayingFileName, "nowplaying.json");
  EXPECT_EQ(syncRequestFileName, "sync.json");
  EXPECT_EQ(commandFileName, "command.json");
  EXPECT_EQ(statusFileName, "status.json");
  EXPECT_EQ(nowPlayingMaxAge, 8.0);
  EXPECT_EQ(syncRequestMaxAge, 25.0);
  EXPECT_EQ(commandMaxAge, 20.0);
}

}  // namespace
}  // namespace vellora
