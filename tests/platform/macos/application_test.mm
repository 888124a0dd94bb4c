#import "platform/macos/application.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellora {
namespace {

using testing::ElementsAre;

// Lets the main run loop go on in its default mode until `holds`, ten seconds at most.
template <typename Condition>
bool runUntil(Condition holds) {
  NSDate* const deadline = [NSDate dateWithTimeIntervalSinceNow:10];
  while (!holds()) {
    if (deadline.timeIntervalSinceNow < 0) return false;
    [NSRunLoop.currentRunLoop runMode:NSDefaultRunLoopMode
                           beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
  }
  return true;
}

struct Delegate final : ApplicationDelegate {
  std::vector<std::string> log;
  void applicationDidFinishLaunching() override { log.push_back("launched"); }
  void applicationOpen(const std::vector<std::string>& urls) override {
    for (const std::string& url : urls) log.push_back(url);
  }
};

class ApplicationTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { [NSApplication sharedApplication]; }

  const std::unique_ptr<Application> application = makeAppKitApplication();
};

TEST_F(ApplicationTest, IsNoProgramOfTheDock) {
  application->setAccessoryPolicy();
  EXPECT_EQ(NSApp.activationPolicy, NSApplicationActivationPolicyAccessory);
}

TEST_F(ApplicationTest, TheDelegateHearsOfTheLaunchAndOfOpenedUrls) {
  const auto delegate = std::make_shared<Delegate>();
  application->setDelegate(delegate);
  NSApplication* const shared = NSApp;
  [shared.delegate
      applicationDidFinishLaunching:
          [NSNotification notificationWithName:NSApplicationDidFinishLaunchingNotification
                                        object:shared]];
  NSURL* const url =
      [NSURL URLWithString:@"tessaly-overlay://x?snapshot=/a%20b/Vellora/snapshot.json"];
  NSURL* const other = [NSURL URLWithString:@"tessaly-overlay:?a=+"];
  [shared.delegate application:shared openURLs:@[ url, other ]];
  EXPECT_THAT(delegate->log,
              ElementsAre("launched", "tessaly-overlay://x?snapshot=/a%20b/Vellora/snapshot.json",
                          "tessaly-overlay:?a=+"));
}

TEST_F(ApplicationTest, TheDelegateIsHeldWeakly) {
  auto delegate = std::make_shared<Delegate>();
  const std::weak_ptr<Delegate> watch = delegate;
  application->setDelegate(delegate);
  delegate.reset();
  EXPECT_TRUE(watch.expired());
  NSApplication* const shared = NSApp;
  [shared.delegate application:shared openURLs:@[]];
}

TEST_F(ApplicationTest, ATimerFiresAgainAndAgainUntilItIsDropped) {
  int fired = 0;
  auto timer = application->scheduleTimer(0.01, [&] { ++fired; });
  EXPECT_EQ(fired, 0);
  EXPECT_TRUE(runUntil([&] { return fired >= 3; }));
  timer.reset();
  const int before = fired;
  runUntil([until = [NSDate dateWithTimeIntervalSinceNow:0.1]] {
    return until.timeIntervalSinceNow < 0;
  });
  EXPECT_EQ(fired, before);
}

TEST_F(ApplicationTest, AQueueRunsItsWorkInOrderOffTheMainThreadAndHandsItBack) {
  const auto queue = application->makeSerialQueue("Vellora.test");
  const auto handOff = application->mainHandOff();
  std::vector<std::string> log;
  for (int i = 0; i < 3; ++i) {
    queue->async([&log, handOff, i] {
      const std::string label = dispatch_queue_get_label(DISPATCH_CURRENT_QUEUE_LABEL);
      const bool main = NSThread.isMainThread;
      const bool urgent = qos_class_self() == QOS_CLASS_USER_INTERACTIVE;
      handOff([&log, label, main, urgent, i] {
        log.push_back(label + (main ? " main" : " aside") + (urgent ? " urgent " : " ") +
                      std::to_string(i) + (NSThread.isMainThread ? "" : " not handed over"));
      });
    });
  }
  EXPECT_TRUE(log.empty());
  EXPECT_TRUE(runUntil([&] { return log.size() == 3; }));
  EXPECT_THAT(log, ElementsAre("Vellora.test aside urgent 0", "Vellora.test aside urgent 1",
                               "Vellora.test aside urgent 2"));
}

TEST_F(ApplicationTest, WorkThatWaitsIsDroppedWithItsQueue) {
  auto queue = application->makeSerialQueue("Vellora.test");
  const dispatch_semaphore_t started = dispatch_semaphore_create(0);
  const dispatch_semaphore_t goOn = dispatch_semaphore_create(0);
  const dispatch_semaphore_t ended = dispatch_semaphore_create(0);
  const auto second = std::make_shared<std::atomic<bool>>(false);
  queue->async([started, goOn, ended] {
    dispatch_semaphore_signal(started);
    dispatch_semaphore_wait(goOn, DISPATCH_TIME_FOREVER);
    dispatch_semaphore_signal(ended);
  });
  queue->async([second] { *second = true; });
  dispatch_semaphore_wait(started, DISPATCH_TIME_FOREVER);
  queue.reset();  // does not wait for the work in progress
  dispatch_semaphore_signal(goOn);
  dispatch_semaphore_wait(ended, DISPATCH_TIME_FOREVER);
  runUntil([until = [NSDate dateWithTimeIntervalSinceNow:0.1]] {
    return until.timeIntervalSinceNow < 0;
  });
  EXPECT_FALSE(*second);
}

TEST_F(ApplicationTest, TheHandOffDoesNothingOnceTheApplicationIsGone) {
  auto own = makeAppKitApplication();
  const auto handOff = own->mainHandOff();
  bool waited = false;
  bool late = false;
  handOff([&] { waited = true; });
  own.reset();
  handOff([&] { late = true; });
  runUntil([until = [NSDate dateWithTimeIntervalSinceNow:0.1]] {
    return until.timeIntervalSinceNow < 0;
  });
  EXPECT_FALSE(waited);
  EXPECT_FALSE(late);
}

}  // namespace
}  // namespace vellora
