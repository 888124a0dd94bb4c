#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <glib-unix.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/loop/glib_application.h"
#include "platform/linux/open/open_interface.h"

namespace vellora {
namespace {

class Delegate : public ApplicationDelegate {
 public:
  void applicationDidFinishLaunching() override {
    ++launches;
    if (launched) launched();
  }
  void applicationOpen(const std::vector<std::string>& urls) override { opened.push_back(urls); }

  int launches = 0;
  std::vector<std::vector<std::string>> opened;
  std::function<void()> launched;
};

// A gate that background work waits at until the test opens it.
class Gate {
 public:
  void open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }
  void pass() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = false;
};

// An application whose run ends with an error when the test did not end it within ten seconds.
class ApplicationTest : public ::testing::Test {
 protected:
  ApplicationTest() {
    leaveSessionBus();
    application.setDelegate(delegate);
  }

  void run() {
    const auto late = application.scheduleTimer(10, [this] {
      ADD_FAILURE() << "the event loop was not ended";
      application.terminate();
    });
    application.run();
  }

  GlibApplication application;
  std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
};

TEST_F(ApplicationTest, LaunchesBeforeAnythingElseThatTheLoopHasToDo) {
  int launchesAtHandOff = -1;
  application.mainHandOff()([&] {
    launchesAtHandOff = delegate->launches;
    application.terminate();
  });
  run();
  EXPECT_EQ(launchesAtHandOff, 1);
}

TEST_F(ApplicationTest, TerminationBeforeTheRunLaunchesNothing) {
  application.terminate();
  run();
  EXPECT_EQ(delegate->launches, 0);
}

TEST_F(ApplicationTest, EndsAtTheTerminationSignalsOfUnix) {
  for (const int signal : {SIGTERM, SIGINT}) {
    EXPECT_EXIT(
        {
          GlibApplication own;
          auto ownDelegate = std::make_shared<Delegate>();
          ownDelegate->launched = [signal] { ::kill(::getpid(), signal); };
          own.setDelegate(ownDelegate);
          own.run();
          std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
  }
}

TEST_F(ApplicationTest, NothingFiresAfterTermination) {
  int later = 0;
  const auto handOff = application.mainHandOff();
  // Both timers and the hand-off are due in the same round of the loop.
  const auto first = application.scheduleTimer(0.02, [&] {
    handOff([&] { ++later; });
    application.terminate();
  });
  const auto second = application.scheduleTimer(0.02, [&] { ++later; });
  delegate->launched = [] { g_usleep(50'000); };
  run();
  EXPECT_EQ(later, 0);
}

TEST_F(ApplicationTest, HandedOverWorkAfterTheOneThatTerminatesDoesNotRun) {
  int later = 0;
  const auto handOff = application.mainHandOff();
  handOff([&] { application.terminate(); });
  handOff([&] { ++later; });
  run();
  EXPECT_EQ(later, 0);
}

// A loop that has been woken without cause goes round once more for nothing.
TEST_F(ApplicationTest, HandOffWakesTheLoopOnce) {
  bool ran = false;
  application.mainHandOff()([&] { ran = true; });
  while (!ran) g_main_context_iteration(nullptr, TRUE);
  gint timeout = 0;
  std::array<GPollFD, 16> descriptors{};
  const gint count = g_main_context_query(g_main_context_default(), G_MAXINT, &timeout,
                                          descriptors.data(), descriptors.size());
  ASSERT_GE(count, 1);
  ASSERT_LE(count, static_cast<gint>(descriptors.size()));
  EXPECT_EQ(g_poll(descriptors.data(), static_cast<guint>(count), 0), 0);
}

TEST_F(ApplicationTest, HandOffAfterTheApplicationIsGoneDoesNothing) {
  auto own = std::make_unique<GlibApplication>();
  const auto handOff = own->mainHandOff();
  const auto held = std::make_shared<int>(0);
  const auto run = [held] { ++*held; };
  handOff(run);
  EXPECT_EQ(held.use_count(), 3);
  own.reset();
  std::thread([&] { handOff(run); }).join();
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
  EXPECT_EQ(*held, 0);
  EXPECT_EQ(held.use_count(), 2);  // neither piece is kept
}

TEST_F(ApplicationTest, QueueHasOneThreadWithTheLabelAsFarAsTheKernelKeepsIt) {
  const auto queue = application.makeSerialQueue("Vellora.accessibility");
  const auto handOff = application.mainHandOff();
  std::string name;
  std::set<std::thread::id> threads;
  for (int i = 0; i < 20; ++i) {
    queue->async([&, handOff, i] {
      char own[17] = {};
      ::prctl(PR_GET_NAME, own);
      handOff([&, i, text = std::string(own), thread = std::this_thread::get_id()] {
        name = text;
        threads.insert(thread);
        if (i == 19) application.terminate();
      });
    });
  }
  run();
  EXPECT_EQ(name, "Vellora.accessi");
  EXPECT_EQ(threads.size(), 1u);
}

TEST_F(ApplicationTest, QueueIsSeenWorkingFromTheCallUntilItsWorkIsDone) {
  auto gate = std::make_shared<Gate>();
  BackgroundQueue queue("q");
  EXPECT_FALSE(BackgroundQueue::isWorking(queue.state()));
  queue.async([=] { gate->pass(); });
  EXPECT_TRUE(BackgroundQueue::isWorking(queue.state()));
  gate->open();
  while (BackgroundQueue::isWorking(queue.state())) std::this_thread::yield();
}

// The piece of work never ends; only leaving at once can end this process with status 0.
TEST_F(ApplicationTest, HungBackgroundWorkDoesNotDelayTheEnd) {
  const auto started = std::chrono::steady_clock::now();
  EXPECT_EXIT(
      {
        GlibApplication own;
        auto queue = own.makeSerialQueue("Vellora.accessibility");
        auto gate = std::make_shared<Gate>();
        auto ownDelegate = std::make_shared<Delegate>();
        ownDelegate->launched = [&] {
          queue->async([gate] { gate->pass(); });
          own.terminate();
        };
        own.setDelegate(ownDelegate);
        std::cout << "flushed";
        own.run();
        std::_Exit(3);
      },
      ::testing::ExitedWithCode(0), "");
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(30));
}

TEST(OpenedUrlsTest, SecondInstanceRunsWithoutThem) {
  const PrivateBus bus;
  const auto delegate = std::make_shared<Delegate>();
  const auto first = bus.connect();
  const GVariantPtr owned(g_dbus_connection_call_sync(
      first.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", OpenInterface::busName, 4u), nullptr,
      G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
  ASSERT_TRUE(owned);
  GlibApplication application;
  application.setDelegate(delegate);
  const auto end = application.scheduleTimer(0.2, [&] { application.terminate(); });
  application.run();
  EXPECT_EQ(delegate->launches, 1);
  EXPECT_TRUE(delegate->opened.empty());
}

}  // namespace
}  // namespace vellora
