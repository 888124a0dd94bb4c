#include "contracts/application_contract.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

namespace vellora {
namespace {

using testing::ElementsAre;

class Delegate final : public ApplicationDelegate {
 public:
  void applicationDidFinishLaunching() override {
    if (onLaunch) onLaunch();
  }
  void applicationOpen(const std::vector<std::string>& urls) override { opened.push_back(urls); }

  std::vector<std::vector<std::string>> opened;
  std::function<void()> onLaunch;
};

}  // namespace

std::function<void()> ApplicationSubject::occupy(SerialQueue& queue) {
  const auto begun = std::make_shared<std::promise<void>>();
  const auto goOn = std::make_shared<std::promise<void>>();
  const auto ended = std::make_shared<std::promise<void>>();
  queue.async([=] {
    begun->set_value();
    goOn->get_future().wait();
    ended->set_value();
  });
  begun->get_future().wait();
  return [=] {
    goOn->set_value();
    ended->get_future().wait();
  };
}

TEST_P(ApplicationContract, LaunchesWithinTheRunWhoseEndIsASuccess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto runToItsEnd = [&] {
    Application& application = subject->application();
    const auto delegate = std::make_shared<Delegate>();
    delegate->onLaunch = [&] {
      std::fputs("launched ", stderr);
      application.terminate();
    };
    application.setAccessoryPolicy();
    application.setDelegate(delegate);
    std::fputs("running ", stderr);
    application.run();
    std::exit(0);
  };
  // A service that the subject started may write there between the two.
  EXPECT_EXIT(runToItsEnd(), testing::ExitedWithCode(0),
              testing::ContainsRegex("running (.|\n)*launched "));
}

TEST_P(ApplicationContract, OpenedUrlsReachTheDelegateUnchanged) {
  const auto delegate = std::make_shared<Delegate>();
  subject->application().setDelegate(delegate);
  subject->open(subject->urls());
  EXPECT_THAT(delegate->opened, ElementsAre(subject->urls()));
}

TEST_P(ApplicationContract, TheDelegateIsHeldWeakly) {
  auto delegate = std::make_shared<Delegate>();
  const std::weak_ptr<Delegate> watched = delegate;
  subject->application().setDelegate(delegate);
  delegate.reset();
  EXPECT_TRUE(watched.expired());
  subject->open(subject->urls());  // nobody hears of it
}

TEST_P(ApplicationContract, ATimerFiresAgainAndAgainUntilItIsDropped) {
  int fired = 0;
  auto timer = subject->application().scheduleTimer(0.01, [&] { ++fired; });
  EXPECT_EQ(fired, 0);
  EXPECT_TRUE(subject->loopUntil([&] { return fired >= 3; }));
  timer.reset();
  const int before = fired;
  int others = 0;
  const auto other = subject->application().scheduleTimer(0.01, [&] { ++others; });
  EXPECT_TRUE(subject->loopUntil([&] { return others >= 3; }));
  EXPECT_EQ(fired, before);
}

TEST_P(ApplicationContract, ATimerMayBeDroppedByItsOwnFiring) {
  int fired = 0;
  int others = 0;
  std::unique_ptr<Timer> timer;
  timer = subject->application().scheduleTimer(0.01, [&] {
    ++fired;
    timer.reset();
  });
  const auto other = subject->application().scheduleTimer(0.01, [&] { ++others; });
  EXPECT_TRUE(subject->loopUntil([&] { return others >= 3; }));
  EXPECT_EQ(fired, 1);
}

TEST_P(TimerContract, NoFiringComesBeforeItsTime) {
  const double began = subject->elapsed();
  std::vector<double> firings;
  const auto timer = subject->application().scheduleTimer(
      0.04, [&] { firings.push_back(subject->elapsed() - began); });
  ASSERT_TRUE(subject->loopUntil([&] { return firings.size() >= 4; }));
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_GE(firings[i], 0.04 * static_cast<double>(i + 1) - 2e-3) << i;
  }
}

TEST_P(TimerContract, LateFiringsAreNotMadeUpFor) {
  std::vector<double> firings;
  const auto timer = subject->application().scheduleTimer(0.05, [&] {
    firings.push_back(subject->elapsed());
    if (firings.size() == 1) subject->beBusy(0.3);  // six intervals
  });
  ASSERT_TRUE(subject->loopUntil([&] { return firings.size() >= 6; }));
  // One firing may come at once, and the next at the next whole interval.
  EXPECT_GE(firings[5] - firings[0], 0.3 + 3 * 0.05 - 2e-3);
}

TEST_P(ApplicationContract, HandedOverWorkRunsLaterOnTheMainThreadInOrder) {
  const auto handOff = subject->application().mainHandOff();
  const auto main = std::this_thread::get_id();
  std::vector<std::string> log;
  const auto note = [&](const std::string& what) {
    log.push_back(what + (std::this_thread::get_id() == main ? "" : " aside"));
  };
  handOff([&] {
    handOff([&] { note("within"); });
    note("first");
  });
  std::thread([&] { handOff([&] { note("of another thread"); }); }).join();
  handOff([&] { note("last"); });
  EXPECT_TRUE(log.empty());
  EXPECT_TRUE(subject->loopUntil([&] { return log.size() == 4; }));
  EXPECT_THAT(log, ElementsAre("first", "of another thread", "last", "within"));
}

TEST_P(ApplicationContract, TheHandOffDoesNothingOnceTheApplicationIsGone) {
  const auto handOff = subject->application().mainHandOff();
  bool ran = false;
  handOff([&] { ran = true; });
  subject->endApplication();
  std::thread([&] { handOff([&] { ran = true; }); }).join();
  subject->settle();
  EXPECT_FALSE(ran);
}

TEST_P(ApplicationContract, AQueueRunsItsWorkOneByOneInOrderBesideTheMainThread) {
  const auto queue = subject->application().makeSerialQueue("Vellora.test");
  const auto handOff = subject->application().mainHandOff();
  const auto main = std::this_thread::get_id();
  // Outlives the test, which may be over before the last piece of work is.
  const auto atWork = std::make_shared<std::atomic<int>>(0);
  std::atomic<bool> wrong = false;
  std::vector<int> order;
  for (int i = 0; i < 20; ++i) {
    queue->async([&, handOff, atWork, i] {
      if (++*atWork != 1 || std::this_thread::get_id() == main) wrong = true;
      handOff([&, i] { order.push_back(i); });
      --*atWork;
    });
  }
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(subject->loopUntil([&] { return order.size() == 20; }));
  EXPECT_FALSE(wrong);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(order.at(static_cast<std::size_t>(i)), i);
}

TEST_P(ApplicationContract, WorkThatWaitsIsDroppedWithItsQueue) {
  auto queue = subject->application().makeSerialQueue("Vellora.test");
  const auto release = subject->occupy(*queue);
  const auto ran = std::make_shared<std::atomic<bool>>(false);
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> watched = held;
  queue->async([ran, held] { *ran = true; });
  held.reset();
  queue.reset();  // does not wait for the work in progress
  release();
  EXPECT_TRUE(subject->loopUntil([&] { return watched.expired(); }));
  EXPECT_FALSE(*ran);
}

}  // namespace vellora
