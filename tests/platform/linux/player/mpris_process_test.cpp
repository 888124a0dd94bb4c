// Players that are found by the process of a window.
#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/player/mpris_fixture.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Action = MusicCommand::Action;

// As browsers are: without a desktop entry.
FakePlayer::Setup nameless(const std::string& name, std::size_t track) {
  auto setup = playing(track);
  setup.busName = "org.mpris.MediaPlayer2." + name;
  setup.desktopEntry.reset();
  return setup;
}

// A program of its own that is no player.
class PlainProcess {
 public:
  PlainProcess() : process_(::fork()) {
    if (process_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::pause();
  }
  ~PlainProcess() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  PlainProcess(const PlainProcess&) = delete;
  PlainProcess& operator=(const PlainProcess&) = delete;

  pid_t process() const { return process_; }

 private:
  pid_t process_;
};

const std::string first = "Der Mond ist aufgegangen|Traditional|Abends|0|";
const std::string second = "Sakura|Choir|Spring|0|";

class MprisProcessTest : public MprisTest {
 protected:
  explicit MprisProcessTest(std::chrono::milliseconds patience = longest) : MprisTest(patience) {}

  void bringToFront(pid_t process) {
    windows->bringToFront({.process = process, .descriptions = {}, .clientArea = {}, .scale = 1});
  }
};

TEST_F(MprisProcessTest, ThePlayerOfAWindowsProcessIsFollowed) {
  FakePlayer player(nameless("web.instance1", 1));
  FakePlayer other(nameless("aaa", 0));
  expectReply(ask(), "");
  expectError(command(Action::next), "no player");
  bringToFront(player.process());
  expectReply(ask(), second + "playing");
  expectReply(command(Action::next), "next");
  EXPECT_THAT(player.log(), ElementsAre("Next", "Play"));
  EXPECT_THAT(other.log(), IsEmpty());
}

// The window is the wrapper's, this process's, and the player is its child.
TEST_F(MprisProcessTest, SoIsThatOfAProcessThatTheWindowsOwnStarted) {
  FakePlayer player(nameless("web", 1));
  bringToFront(::getpid());
  expectReply(ask(), second + "playing");
}

TEST_F(MprisProcessTest, TheDesktopEntryComesFirst) {
  FakePlayer web(nameless("aaa", 1));
  FakePlayer named(playing(0));
  bringToFront(web.process());
  expectReply(ask(), first + "playing");
  named.end();
  expectReply(ask(), second + "playing");
}

TEST_F(MprisProcessTest, TheWindowLastInFrontCounts) {
  FakePlayer one(nameless("one", 0));
  FakePlayer two(nameless("two", 1));
  bringToFront(one.process());
  bringToFront(two.process());
  expectReply(ask(), second + "playing");
  bringToFront(one.process());
  expectReply(ask(), first + "playing");
}

TEST_F(MprisProcessTest, AWindowWithoutAPlayerLeavesItToTheOneBehind) {
  FakePlayer player(nameless("one", 0));
  bringToFront(player.process());
  const PlainProcess silent;
  bringToFront(silent.process());
  expectReply(ask(), first + "playing");
}

TEST_F(MprisProcessTest, OfSeveralTheOnePlayingElseTheFirst) {
  auto paused = nameless("aaa", 0);
  paused.status = "Paused";
  auto later = nameless("bbb", 1);
  later.status = "Paused";
  FakePlayer one(paused);
  FakePlayer two(later);
  bringToFront(::getpid());  // both are its children
  expectReply(ask(), first + "paused");
  FakePlayer three(nameless("ccc", 1));
  expectReply(ask(), second + "playing");
  FakePlayer four(nameless("abc", 0));
  expectReply(ask(), first + "playing");
  four.end();
  three.end();
  expectReply(ask(), first + "paused");
}

TEST_F(MprisProcessTest, AnOwnerIsAskedForItsProcessAnewWhenTheNameChangesHands) {
  FakePlayer one(nameless("web", 0));
  bringToFront(one.process());
  expectReply(ask(), first + "playing");
  one.end();
  FakePlayer two(nameless("web", 1));  // and nobody looked meanwhile
  expectReply(ask(), "");
  bringToFront(two.process());
  expectReply(ask(), second + "playing");
}

class MprisProcessSilenceTest : public MprisProcessTest {
 protected:
  MprisProcessSilenceTest() : MprisProcessTest(brief) {}
};

TEST_F(MprisProcessSilenceTest, OneOfSeveralThatHangsCostsOneRequest) {
  FakePlayer hung(nameless("aaa", 0));
  FakePlayer player(nameless("bbb", 1));
  bringToFront(::getpid());
  EXPECT_TRUE(hears(first + "playing"));
  hung.stop();
  expectError(ask(), "in time");
  expectError(ask(), "in time");  // asked for its desktop entry, and for its status
  for (int i = 0; i < 5; ++i) expectReply(ask(), second + "playing");
  hung.wake();
}

}  // namespace
}  // namespace vellora
