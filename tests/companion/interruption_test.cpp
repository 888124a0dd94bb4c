#include "companion/program/interruption.h"

#include <array>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellora::companion {
namespace {

constexpr double longer = 60;  // seconds, than any of these waits

class Interruptions : public testing::Test {
 protected:
  bool isCutShort(std::initializer_list<int> descriptors = {}) const {
    const auto begin = std::chrono::steady_clock::now();
    interruption.wait(longer, descriptors);
    return std::chrono::steady_clock::now() - begin < std::chrono::duration<double>(longer);
  }

  Interruption interruption;
};

TEST_F(Interruptions, ASignalThatHasComeIsSeenAndEndsTheWait) {
  EXPECT_FALSE(interruption.asked());
  raise(SIGTERM);
  EXPECT_TRUE(interruption.asked());
  EXPECT_TRUE(isCutShort());
  EXPECT_TRUE(interruption.asked()) << "it was taken by the wait, and counts";
  interruption.take();
  EXPECT_FALSE(interruption.asked());
}

TEST_F(Interruptions, ASignalThatComesMeanwhileEndsTheWait) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    std::thread other([signal] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      kill(getpid(), signal);
    });
    EXPECT_TRUE(isCutShort()) << signal;
    other.join();
    EXPECT_TRUE(interruption.asked()) << signal;
    interruption.take();
  }
}

TEST_F(Interruptions, TheEndOfAProgramEndsTheWaitAndIsNoInterruption) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_GT(child, 0);
  EXPECT_TRUE(isCutShort());
  EXPECT_FALSE(interruption.asked());
  EXPECT_EQ(waitpid(child, nullptr, 0), child);
}

TEST_F(Interruptions, WhatCanBeReadEndsTheWait) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  interruption.wait(0, {-1, ends[0]});
  ASSERT_EQ(write(ends[1], "x", 1), 1);
  EXPECT_TRUE(isCutShort({-1, ends[0]}));
  close(ends[0]);
  close(ends[1]);
}

TEST(Interruption, LeavesTheSignalsAsTheyWere) {
  struct sigaction before {};
  sigaction(SIGTERM, nullptr, &before);
  {
    const Interruption interruption;
    raise(SIGTERM);
    interruption.wait(longer, {});
    interruption.take();
  }
  struct sigaction after {};
  sigaction(SIGTERM, nullptr, &after);
  EXPECT_EQ(after.sa_handler, before.sa_handler);
  sigset_t held;
  sigprocmask(SIG_SETMASK, nullptr, &held);
  EXPECT_EQ(sigismember(&held, SIGTERM), 0);
  EXPECT_EQ(sigismember(&held, SIGCHLD), 0);
}

}  // namespace
}  // namespace vellora::companion
