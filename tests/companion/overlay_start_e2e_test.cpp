#include <charconv>

#include <signal.h>

#include "companion/companion_desk.h"

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
};

TEST_F(CompanionStartsTheOverlay, WhereNoneRuns) {
  startCompanion({"--overlay"});
  EXPECT_TRUE(waitFor([&] { return following(); }));
  EXPECT_TRUE(waitFor([&] { return said("the overlay was started or pointed at this folder"); }));
  EXPECT_GT(ownerOfTheName(), 0);
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
