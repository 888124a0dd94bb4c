#include "matching/track_matching.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vellora::OverlayMatching {
namespace {

struct Example {
  std::string description;
  std::string title;
  std::string artist;
  bool matches;
};

TEST(TrackMatchingTest, DescriptionBeginsWithTitleAndThenArtist) {
  const std::vector<Example> examples = {
      {"Night Drive — River Band", "Night Drive", "River Band", true},
      {"Night Drive — River Band — Live at Home", "Night Drive", "River Band", true},
      {"NIGHT DRIVE · river band", "Night Drive", "River Band", true},
      {"River Band — Night Drive", "Night Drive", "River Band", false},
      {"Live — Night Drive — River Band", "Night Drive", "River Band", false},
      {"Night Drive — Live — River Band", "Night Drive", "River Band", false},
      {"Night Drive", "Night Drive", "River Band", false},
      {"", "Night Drive", "River Band", false},
      {"Night Drive — River Band", "Night Drive", "", false},
      {"Night Drive — River Band", "", "River Band", false},
      {"愛 — River Band", "爱", "River Band", true},
  };
  for (const Example& example : examples) {
    EXPECT_EQ(trackMatches(example.description, example.title, example.artist), example.matches)
        << example.description << " | " << example.title << " | " << example.artist;
  }
}

TEST(TrackMatchingTest, EmptyDescriptionNeverMatches) {
  EXPECT_FALSE(trackMatches("", "Night Drive", "River Band"));
  EXPECT_FALSE(trackMatches(" — ", "Night Drive", "River Band"));
}

TEST(TrackMatchingTest, TitleOrArtistWithAnEmptyKeyMatchesNothing) {
  EXPECT_FALSE(trackMatches("??? — River Band", "???", "River Band"));
  EXPECT_FALSE(trackMatches("River Band", "???", "River Band"));
  EXPECT_FALSE(trackMatches("Night Drive — !!!", "Night Drive", "!!!"));
  EXPECT_FALSE(trackMatches("Night Drive", "Night Drive", "!!!"));
  EXPECT_FALSE(trackMatches("?", "?", "!"));
  EXPECT_FALSE(trackMatches("", "", ""));
}

TEST(TrackMatchingTest, DifferencesOfWritingDoNotCount) {
  for (const std::string description :
       {"DÉJÀ VU — 後來", "deja vu/后来", "De\u0301ja\u0300-Vu, 后來", "ＤＥＪＡ　ＶＵ（后来）"}) {
    EXPECT_TRUE(trackMatches(description, "Déjà Vu", "后来")) << description;
  }
}

TEST(TrackMatchingTest, BoundaryBetweenTitleAndArtistIsNotChecked) {
  EXPECT_TRUE(trackMatches("Night Drive Band", "Night Drive", "Band"));
  EXPECT_TRUE(trackMatches("Night Drive Band", "Night", "Drive Band"));
}

TEST(TrackMatchingTest, DescriptionBeginsByWholeCharacters) {
  EXPECT_FALSE(trackMatches("歌 — が", "歌", "か"));
  EXPECT_FALSE(trackMatches("歌 — か\u3099", "歌", "か"));
  EXPECT_TRUE(trackMatches("歌 — か\u3099", "歌", "が"));
}

}  // namespace
}  // namespace vellora::OverlayMatching
