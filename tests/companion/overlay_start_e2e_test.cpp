#include <charconv>

#include <signal.h>

#include "companion/companion_desk.h"
#include "e2e/neighbours.h"

namespace vellora::e2e {
namespace {

class CompanionStartsTheOverlay : public CompanionOnTheDesk {
 protected:
  void TearDown() override {
    CompanionOnTheDesk::TearDown();
    if (const pid_t id = ownerOfTheName(); id > 0) kill(id, SIGTERM);
  }
  // The process of the overlay that takes URLs; 0 where there is none.
  static pid_t ownerOfTheName() {
    const std::string answer =
        outputOf({"gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                  "/org/freedesktop/DBus", "--method",
                  "org.freedesktop.DBus.GetConnectionUnixProcessID", "org.vellora.Vellora"});
    const std::size_t number = answer.find("uint32 ");
    pid_t id = 0;
    if (number != std::string::npos) {
      std::from_chars(answer.data() + number + 7, answer.data() + answer.size(), id);
    }
    return id;
  }
  // Waits until that is another one than `before`; 0 where none comes. A signal to 0 would reach
  // the test and everything beside it.
  pid_t ownerOtherThan(pid_t before) {
    pid_t owner = 0;
    const auto isAnother = [&] {
      owner = ownerOfTheName();
      return owner > 0 && owner != before;
    };
    return waitFor(isAnother) ? owner : 0;
  }
};

TEST_F(CompanionStartsTheOverlay, WhereNoneRuns) {
  startCompanion({"--overlay"});
  EXPECT_TRUE(waitFor([&] { return following(); }));
  EXPECT_TRUE(waitFor([&] { return said("the overlay was started"); }));
  EXPECT_GT(ownerOtherThan(0), 0);
}

TEST_F(CompanionStartsTheOverlay, AndEndsWithItWhenTheDisplayHasGone) {
  startCompanion({"--overlay"});
  ASSERT_TRUE(waitFor([&] { return following(); }));
  kill(sessionPiece("xvfb"), SIGKILL);
  EXPECT_TRUE(waitFor([&] { return !companion->running(); }));
  EXPECT_EQ(companion->exitStatus(), 3);
  EXPECT_TRUE(said("vellora-companion: the display is gone, and the overlay with it"));
  EXPECT_EQ(ownerOfTheName(), 0);
}

// As after a suspend from which the overlay wakes first: its files are too old, so it ends.
TEST_F(CompanionStartsTheOverlay, AgainWhenItHasEndedForWantOfFreshFiles) {
  const OtherClock clock(folder);
  environment = clock.environment();
  startCompanion({"--overlay"});
  ASSERT_TRUE(waitFor([&] { return following(); }));
  const pid_t first = ownerOtherThan(0);
  companion->signal(SIGSTOP);
  clock.set(40);
  ASSERT_TRUE(waitFor([&] { return status() && status()->stopped && ownerOfTheName() == 0; }));
  companion->signal(SIGCONT);
  const double woken = now();
  EXPECT_TRUE(waitFor([&] { return following(); }));
  std::cout << "captions again " << now() - woken << " s after the companion woke\n";
  EXPECT_GT(ownerOtherThan(first), 0);
}

TEST_F(CompanionStartsTheOverlay, AgainOneThatItOnlyPointedWhenThatSaysThatItHasStopped) {
  const OtherClock clock(folder);
  environment = clock.environment();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return ownerOfTheName() == overlay->pid(); }));
  startCompanion({"--overlay"});
  ASSERT_TRUE(waitFor([&] { return following(); }));
  ASSERT_TRUE(said("started or pointed at this folder"));
  companion->signal(SIGSTOP);
  clock.set(40);
  ASSERT_TRUE(waitFor([&] { return !overlay->running(); }));
  companion->signal(SIGCONT);
  EXPECT_TRUE(waitFor([&] { return following() && ownerOfTheName() > 0; }));
}

TEST_F(CompanionStartsTheOverlay, AgainWhenItWasKilledButNotForEver) {
  startCompanion({"--overlay"});
  pid_t last = 0;
  for (int i = 0; i < 5; ++i) {
    const pid_t next = ownerOtherThan(last);
    ASSERT_GT(next, 0) << i;
    last = next;
    kill(last, SIGKILL);
  }
  EXPECT_TRUE(waitFor([&] {
    return said("the overlay has ended (exit status 137) too often to be started again");
  }));
  EXPECT_EQ(ownerOfTheName(), 0);
  EXPECT_TRUE(companion->running());
}

TEST_F(CompanionStartsTheOverlay, NotAgainWhenAUserHasEndedIt) {
  startCompanion({"--overlay"});
  ASSERT_TRUE(waitFor([&] { return following(); }));
  const pid_t owner = ownerOtherThan(0);
  ASSERT_GT(owner, 0);
  kill(owner, SIGTERM);
  EXPECT_TRUE(waitFor([&] { return said("the overlay has ended (exit status 0)"); }));
  // Several steps of the companion later it is still so.
  const double ended = now();
  EXPECT_FALSE(waitFor([&] { return ownerOfTheName() > 0; }, 1.5)) << now() - ended << " s later";
}

TEST_F(CompanionStartsTheOverlay, OrPointsTheRunningOneAtItsFolder) {
  const auto other = folder / "other place & é" / "Vellora";
  std::filesystem::create_directories(other);
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return status().has_value(); }));
  const auto before = exchange;
  useExchange(other);
  startCompanion({"--overlay"});
  EXPECT_TRUE(waitFor([&] { return following(); }));
  EXPECT_TRUE(overlay->running());
  EXPECT_EQ(ownerOfTheName(), overlay->pid());
}

TEST_F(CompanionStartsTheOverlay, AsAProgramOfTheUsersChoiceWhichEndsWithIt) {
  startCompanion({"--overlay-program", VELLORA_PROGRAM});
  ASSERT_TRUE(waitFor([&] { return following(); }));
  EXPECT_TRUE(said("the overlay was started"));
  companion->stop();
  EXPECT_TRUE(waitFor([&] { return ownerOfTheName() == 0; }));
}

TEST_F(CompanionStartsTheOverlay, AndSaysWhereItCannot) {
  startCompanion({"--overlay-program", "/nowhere/vellora"});
  EXPECT_TRUE(waitFor(
      [&] { return said("the overlay cannot be started: is /nowhere/vellora installed?"); }));
  EXPECT_TRUE(companion->running());
}

}  // namespace
}  // namespace vellora::e2e
