#include "companion/exchange/command_watch.h"

#include <gtest/gtest.h>

namespace vellora::companion {
namespace {

using Action = MusicCommand::Action;
using Outcome = CommandWatch::Outcome;

constexpr double begin = 1'000'000;

NowPlayingTrack track(double at, const char* title, double position, bool playing = true) {
  return {at, title, "Band", "Album", position, playing};
}

MusicCommand commandOf(Action action, const char* title = "") { return {0, action, title, "Band"}; }

// Lets the overlay be there, takes the command at once, and shows `after` one second later.
Outcome outcomeOf(CommandWatch& watch, const NowPlayingTrack& before, const NowPlayingTrack& after,
                  std::optional<MusicCommand>* sent = nullptr) {
  watch.step(begin, std::nullopt, false);
  auto step = watch.step(begin + 0.5, before, false);
  if (sent != nullptr) *sent = step.command;
  if (!step.command) return step.outcome;
  watch.step(begin + 0.6, before, false);
  step = watch.step(begin + 1.6, after, false);
  if (step.outcome != Outcome::waiting) return step.outcome;
  return watch.step(begin + 30, after, false).outcome;
}

struct EffectCase {
  const char* what;
  Action action;
  SeekTarget target;
  NowPlayingTrack before;
  NowPlayingTrack after;
  Outcome outcome;
};

class CommandEffects : public testing::TestWithParam<EffectCase> {};

TEST_P(CommandEffects, AreSeenInWhatIsPublished) {
  CommandWatch watch(commandOf(GetParam().action, "Night Drive"), GetParam().target, 8);
  EXPECT_EQ(outcomeOf(watch, GetParam().before, GetParam().after), GetParam().outcome)
      << GetParam().what << ": " << watch.report();
}

INSTANTIATE_TEST_SUITE_P(Each, CommandEffects,
                         testing::Values(EffectCase{"play",
                                                    Action::play,
                                                    {},
                                                    track(begin + 0.4, "Other", 50),
                                                    track(begin + 1.5, "NIGHT  DRIVE (Live)", 0.5),
                                                    Outcome::done},
                                         EffectCase{"play, still another",
                                                    Action::play,
                                                    {},
                                                    track(begin + 0.4, "Other", 50),
                                                    track(begin + 1.5, "Other", 51),
                                                    Outcome::noEffect},
                                         EffectCase{"play, but paused",
                                                    Action::play,
                                                    {},
                                                    track(begin + 0.4, "Other", 50),
                                                    track(begin + 1.5, "Night Drive", 0, false),
                                                    Outcome::noEffect},
                                         EffectCase{"play at a place",
                                                    Action::play,
                                                    {60, false},
                                                    track(begin + 0.4, "Other", 50),
                                                    track(begin + 1.5, "Night Drive", 61),
                                                    Outcome::done},
                                         EffectCase{"play at another place",
                                                    Action::play,
                                                    {60, false},
                                                    track(begin + 0.4, "Other", 50),
                                                    track(begin + 1.5, "Night Drive", 1),
                                                    Outcome::noEffect},
                                         EffectCase{"seek",
                                                    Action::seek,
                                                    {90, false},
                                                    track(begin + 0.4, "A", 50, false),
                                                    track(begin + 1.5, "A", 91),
                                                    Outcome::done},
                                         EffectCase{"seek without effect",
                                                    Action::seek,
                                                    {90, false},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 1.5, "A", 51.1),
                                                    Outcome::noEffect},
                                         EffectCase{"seek back",
                                                    Action::seek,
                                                    {-10, true},
                                                    track(begin + 0.5, "A", 50),
                                                    track(begin + 1.5, "A", 41),
                                                    Outcome::done},
                                         EffectCase{"seek before the begin",
                                                    Action::seek,
                                                    {-100, true},
                                                    track(begin + 0.5, "A", 50),
                                                    track(begin + 1.5, "A", 1),
                                                    Outcome::done},
                                         EffectCase{"pause",
                                                    Action::playPause,
                                                    {},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 1.5, "A", 51, false),
                                                    Outcome::done},
                                         EffectCase{"still playing",
                                                    Action::playPause,
                                                    {},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 1.5, "A", 51),
                                                    Outcome::noEffect},
                                         EffectCase{"next",
                                                    Action::next,
                                                    {},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 1.5, "B", 1),
                                                    Outcome::done},
                                         EffectCase{"next in a list of one",
                                                    Action::next,
                                                    {},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 1.5, "A", 1),
                                                    Outcome::done},
                                         EffectCase{"next without effect",
                                                    Action::next,
                                                    {},
                                                    track(begin + 0.4, "A", 0.2),
                                                    track(begin + 1.5, "A", 1.3),
                                                    Outcome::noEffect},
                                         EffectCase{"previous to the begin",
                                                    Action::previous,
                                                    {},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 1.5, "A", 0.9),
                                                    Outcome::done},
                                         EffectCase{"published before the command",
                                                    Action::next,
                                                    {},
                                                    track(begin + 0.4, "A", 50),
                                                    track(begin + 0.45, "B", 1),
                                                    Outcome::noEffect}));

TEST(CommandWatch, WaitsForAPublicationOfItsOwnTimeBeforeItSends) {
  CommandWatch watch(commandOf(Action::next), {}, 8);
  const auto old = track(begin - 3, "A", 10);
  const auto first = watch.step(begin, old, false);
  ASSERT_TRUE(first.sync);
  EXPECT_EQ(first.sync->updatedAt, begin);
  EXPECT_FALSE(first.command);
  EXPECT_FALSE(watch.step(begin + 1, old, false).command);
  const auto sent = watch.step(begin + 1.1, track(begin + 1.05, "A", 14), false);
  ASSERT_TRUE(sent.command);
  EXPECT_EQ(sent.command->requestedAt, begin + 1.1);
}

TEST(CommandWatch, ACommandThatWaitsIsNotReplacedAtOnce) {
  CommandWatch watch(commandOf(Action::next), {}, 8);
  watch.step(begin, std::nullopt, true);
  EXPECT_FALSE(watch.step(begin + 1, track(begin + 0.9, "A", 1), true).command);
  EXPECT_TRUE(watch.step(begin + 2, track(begin + 1.9, "A", 1), true).command);
}

TEST(CommandWatch, ACommandThatNobodyTakesIsWithdrawn) {
  CommandWatch watch(commandOf(Action::next), {}, 8);
  watch.step(begin, std::nullopt, false);
  ASSERT_TRUE(watch.step(begin + 2, std::nullopt, false).command);
  EXPECT_EQ(watch.step(begin + 4.9, std::nullopt, true).outcome, Outcome::waiting);
  const auto last = watch.step(begin + 5, std::nullopt, true);
  EXPECT_TRUE(last.withdraw);
  EXPECT_EQ(last.outcome, Outcome::notTaken);
  EXPECT_EQ(watch.report(),
            "no overlay answers; start it with --overlay, or see \"vellora-companion status\"");
}

TEST(CommandWatch, ARelativeSeekCountsFromWhereThePlayerIsWhenItIsSent) {
  CommandWatch watch(commandOf(Action::seek), {10, true}, 8);
  std::optional<MusicCommand> sent;
  outcomeOf(watch, track(begin + 0.25, "A", 50), track(begin + 1.5, "A", 61), &sent);
  ASSERT_TRUE(sent);
  EXPECT_DOUBLE_EQ(sent->position, 60.25);
}

// The overlay ends the process over a position that it cannot count in milliseconds.
TEST(CommandWatch, ASeekGoesNowhereThatTheOverlayCannotCount) {
  CommandWatch watch(commandOf(Action::seek), {10, true}, 8);
  std::optional<MusicCommand> sent;
  outcomeOf(watch, track(begin + 0.25, "A", 1e300), track(begin + 1.5, "A", 61), &sent);
  ASSERT_TRUE(sent);
  EXPECT_EQ(sent->position, 360'000);
}

TEST(CommandWatch, ARelativeSeekIsNotSentWhereNothingIsKnown) {
  CommandWatch watch(commandOf(Action::seek), {10, true}, 8);
  watch.step(begin, std::nullopt, false);
  const auto step = watch.step(begin + 2, std::nullopt, false);
  EXPECT_FALSE(step.command);
  EXPECT_EQ(step.outcome, Outcome::notTaken);
}

TEST(CommandWatch, TheRequestIsRenewedWhileItWaits) {
  CommandWatch watch(commandOf(Action::playPause), {}, 60);
  int renewals = 0;
  for (double now = begin; now < begin + 40; now += 0.5) {
    if (watch.step(now, track(now - 0.1, "A", 5), false).sync) ++renewals;
  }
  EXPECT_EQ(renewals, 8);
}

TEST(CommandWatch, SaysWhatHappenedWithoutControlCharacters) {
  CommandWatch watch(commandOf(Action::next), {}, 8);
  outcomeOf(watch, track(begin + 0.4, "A", 50), track(begin + 1.5, "B\x1b[2J", 61.5));
  EXPECT_EQ(watch.report(), "playing “B [2J” by Band at 1:01");
}

}  // namespace
}  // namespace vellora::companion
