#include "playback/track_id.h"

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

TEST(TrackIds, AreObjectPathsThatLeadBack) {
  EXPECT_EQ(trackId(0), "/org/vellora/demo/track/1");
  EXPECT_EQ(trackIndex("/org/vellora/demo/track/8", 8), 7U);
  for (const char* none : {"/org/vellora/demo/track/9", "/org/vellora/demo/track/0", "/",
                           "/org/mpris/MediaPlayer2/TrackList/NoTrack"}) {
    EXPECT_EQ(trackIndex(none, 8), std::nullopt) << none;
  }
}

TEST(TrackIds, TimesAreWholeMicroseconds) {
  EXPECT_EQ(microseconds(1.2345678), 1234568);
  EXPECT_EQ(secondsFrom(2500000), 2.5);
}

}  // namespace
}  // namespace vellora::demo
