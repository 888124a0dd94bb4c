#include "matching/track_match_memory.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "matching/track_matching.h"

namespace vellora {
namespace {

TEST(TrackMatchMemoryTest, TextsWithoutCharactersMatchNothingFromTheStart) {
  TrackMatchMemory memory;
  EXPECT_FALSE(memory.matches("", "", ""));
}

// Every step from one question to another, one that repeats itself among them.
TEST(TrackMatchMemoryTest, AnswersAsTrackMatchesDoesWhateverWasAskedBefore) {
  const std::vector<std::string> descriptions = {
      "Night Drive — River Band", "NIGHT DRIVE River Band", "Day Drive — River Band", ""};
  const std::vector<std::string> titles = {"Night Drive", "Day Drive", ""};
  const std::vector<std::string> artists = {"River Band", "Sea Band", ""};
  struct Question {
    std::string description;
    std::string title;
    std::string artist;
  };
  std::vector<Question> questions;
  for (const auto& description : descriptions) {
    for (const auto& title : titles) {
      for (const auto& artist : artists) questions.push_back({description, title, artist});
    }
  }
  for (const Question& before : questions) {
    for (const Question& after : questions) {
      TrackMatchMemory memory;
      memory.matches(before.description, before.title, before.artist);
      EXPECT_EQ(memory.matches(after.description, after.title, after.artist),
                OverlayMatching::trackMatches(after.description, after.title, after.artist))
          << before.description << '|' << before.title << '|' << before.artist << " then "
          << after.description << '|' << after.title << '|' << after.artist;
    }
  }
}

}  // namespace
}  // namespace vellora
