// Where there is no player: what the bus is asked meanwhile, and that who comes is seen.
#include <csignal>
#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/linux/player/mpris_fixture.h"

namespace vellora {
namespace {

pid_t processOf(GDBusConnection* bus, const char* name) {
  const GVariantPtr reply(g_dbus_connection_call_sync(
      bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "GetConnectionUnixProcessID", g_variant_new("(s)", name), G_VARIANT_TYPE("(u)"),
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  guint32 process = 0;
  if (!reply) throw std::runtime_error("the bus does not say which process it is");
  g_variant_get(reply.get(), "(u)", &process);
  return static_cast<pid_t>(process);
}

class MprisAbsenceTest : public MprisSilenceTest {
 protected:
  ~MprisAbsenceTest() override { wakeBus(); }

  void stopBus() const { ::kill(daemon, SIGSTOP); }
  void wakeBus() const { ::kill(daemon, SIGCONT); }

  // Whether a request, after one that found no player, needs no answer of the bus.
  bool doesWithoutBus(const ScriptRequest& request) {
    MprisScripting fresh(windows, brief);
    expectReply(fresh.run(question), "");
    stopBus();
    const ScriptOutcome outcome = fresh.run(request);
    wakeBus();
    return outcome.reply == "";
  }

  const ScriptRequest question{.source = "", .command = {}};
  const GObjectPtr<GDBusConnection> beside = bus.connect();
  const pid_t daemon = processOf(beside.get(), "org.freedesktop.DBus");
};

TEST_F(MprisAbsenceTest, TheBusIsNotAskedEachTime) {
  // A machine that is busy for long enough between the two has it asked again.
  const Deadline deadline(longest);
  while (!doesWithoutBus(question)) ASSERT_FALSE(deadline.passed());
}

TEST_F(MprisAbsenceTest, TheBusIsAskedForEachCommand) {
  PlayerCommand next;
  next.command = MusicCommand(0, MusicCommand::Action::next, "", "");
  EXPECT_FALSE(doesWithoutBus({.source = "", .command = next}));
}

TEST_F(MprisAbsenceTest, ABusThatHangsIsNoticedAllTheSame) {
  expectReply(ask(), "");
  stopBus();
  const Deadline deadline(longest);
  ScriptOutcome outcome = ask();
  while (outcome.reply && !deadline.passed()) outcome = ask();
  expectError(outcome, "the session bus did not answer in time");
}

TEST_F(MprisAbsenceTest, PlayersThatComeAndGoAreSeen) {
  for (int i = 0; i < 20; ++i) {
    {
      const FakePlayer player(playing(1));
      EXPECT_TRUE(hears("Sakura|Choir|Spring|0|playing"));
    }
    EXPECT_TRUE(hears(""));
  }
}

}  // namespace
}  // namespace vellora
