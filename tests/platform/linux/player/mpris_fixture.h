#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/player/fake_player.h"
#include "platform/linux/player/mpris_scripting.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// What no answer takes on the busiest machine: how long tests wait for what must come.
inline constexpr std::chrono::seconds longest{20};
// And how long for a player that answers nothing, where the rest must come within it.
inline constexpr std::chrono::seconds brief{1};

inline const std::vector<FakePlayer::Track> library{
    {"/track/0", "Der Mond ist aufgegangen", {"Traditional"}, "Abends"},
    {"/track/1", "Sakura", {"Choir"}, "Spring"},
    {"/track/2", "Sakura", {"Anna", "Ben"}, "Blossoms"},
    {"/track/3", "\xC3\x89tude", {"Traditional"}, ""},  // É composed
};

inline FakePlayer::Setup playing(std::size_t index = 0) {
  FakePlayer::Setup setup;
  setup.tracks = library;
  setup.current = index;
  return setup;
}

// Requests over a session bus of the test's own.
class MprisTest : public ::testing::Test {
 protected:
  explicit MprisTest(std::chrono::milliseconds patience = longest) : scripting(windows, patience) {}

  ScriptOutcome ask() { return scripting.run({.source = "", .command = {}}); }

  ScriptOutcome command(MusicCommand::Action action, std::int64_t milliseconds = 0,
                        std::string title = "", std::string artist = "") {
    PlayerCommand value;
    value.command = MusicCommand(0, action, std::move(title), std::move(artist));
    value.milliseconds = milliseconds;
    value.searchLocation = searchLocation;
    return scripting.run({.source = "", .command = value});
  }

  // Whether the question is answered with this sooner or later.
  bool hears(const std::string& reply) {
    const Deadline deadline(longest);
    while (ask().reply != reply) {
      if (deadline.passed()) return false;
    }
    return true;
  }

  std::string searchLocation = "music://catalogue.example/search?term=a%20b&c";
  PrivateBus bus;
  const std::shared_ptr<PlayerWindows> windows = std::make_shared<PlayerWindows>();
  MprisScripting scripting;
};

// The same where a player keeps silent.
class MprisSilenceTest : public MprisTest {
 protected:
  MprisSilenceTest() : MprisTest(brief) {}
};

inline void expectReply(const ScriptOutcome& outcome, const std::string& reply) {
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, reply);
  EXPECT_EQ(outcome.errorDescription, std::nullopt);
}

inline void expectError(const ScriptOutcome& outcome, const std::string& description) {
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, std::nullopt);
  ASSERT_TRUE(outcome.errorDescription);
  EXPECT_THAT(*outcome.errorDescription, ::testing::HasSubstr(description));
}

}  // namespace vellora
