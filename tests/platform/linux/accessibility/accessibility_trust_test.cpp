#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {
namespace {

class AccessibilityTrustTest : public ReadingFixture {
 protected:
  // Twice as many as a wait of a quarter of a second each would let end before `hanging`.
  static constexpr int manyAnswers = 160;
};

TEST_F(AccessibilityTrustTest, FirstAnswerIsTheSessionsOwn) {
  EXPECT_TRUE(accessibility->isTrusted());
  setEnabled(bus, false);
  EXPECT_FALSE(makeLinuxAccessibility()->isTrusted());
}

TEST_F(AccessibilityTrustTest, WithoutABusNothingIsTrustedAndNothingWaits) {
  for (const char* address : {"unix:path=/nonexistent/bus", "nonsense"}) {
    setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
    std::shared_ptr<Accessibility> alone;
    const double time = seconds([&] {
      for (int i = 0; i < manyAnswers; ++i) {
        alone = makeLinuxAccessibility();
        EXPECT_FALSE(alone->isTrusted());
      }
    });
    EXPECT_LT(time, hanging) << address;
    alone->requestTrust();
    EXPECT_FALSE(alone->isTrusted()) << address;
  }
}

TEST_F(AccessibilityTrustTest, ABusThatAppearsLaterIsFound) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  EXPECT_FALSE(accessibility->isTrusted());
  setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
  EXPECT_TRUE(accessibility->isTrusted());
}

TEST_F(AccessibilityTrustTest, WithoutTheServiceNothingIsTrustedUntilItComes) {
  services.reset();
  EXPECT_FALSE(accessibility->isTrusted());
  services = startServices(bus, {true, bus.address()});
  EXPECT_TRUE(eventually([&] { return accessibility->isTrusted(); }));
  services.reset();
  EXPECT_TRUE(eventually([&] { return !accessibility->isTrusted(); }));
}

TEST_F(AccessibilityTrustTest, WithoutAnAccessibilityBusNothingIsTrusted) {
  services.reset();
  services = startServices(bus, {true, ""});
  EXPECT_FALSE(accessibility->isTrusted());
}

TEST_F(AccessibilityTrustTest, AQuestionThatFailsIsAskedOnceMore) {
  for (const int failures : {1, 2}) {  // of the two that are asked
    services.reset();
    services = startServices(bus, {true, bus.address(), failures});
    EXPECT_TRUE(makeLinuxAccessibility()->isTrusted()) << failures;
  }
}

TEST_F(AccessibilityTrustTest, AskingForTrustSwitchesAccessibilityOn) {
  setEnabled(bus, false);
  ASSERT_FALSE(accessibility->isTrusted());
  testing::internal::CaptureStderr();
  accessibility->requestTrust();
  const std::string advice = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(eventually([&] { return accessibility->isTrusted(); }));
  EXPECT_TRUE(isEnabled(bus));
  EXPECT_EQ(std::ranges::count(advice, '\n'), 1) << advice;
  EXPECT_NE(advice.find("at-spi2-core"), std::string::npos) << advice;
}

TEST_F(AccessibilityTrustTest, AskingForTrustFirstOfAllWorksToo) {
  setEnabled(bus, false);
  accessibility->requestTrust();
  EXPECT_TRUE(eventually([&] { return accessibility->isTrusted(); }));
}

TEST_F(AccessibilityTrustTest, AServiceThatHangsDelaysTheFirstAnswerOnly) {
  services->stop();
  const double time = seconds([&] {
    for (int i = 0; i < manyAnswers; ++i) EXPECT_FALSE(accessibility->isTrusted());
    accessibility->requestTrust();
  });
  EXPECT_LT(time, hanging);
  services->resume();
  EXPECT_TRUE(eventually([&] { return accessibility->isTrusted(); }));
}

TEST_F(AccessibilityTrustTest, AServiceThatHangsLaterLeavesTheLastAnswer) {
  ASSERT_TRUE(accessibility->isTrusted());
  services->stop();
  const double time = seconds([&] {
    for (int i = 0; i < manyAnswers; ++i) EXPECT_TRUE(accessibility->isTrusted());
  });
  EXPECT_LT(time, hanging);
}

}  // namespace
}  // namespace vellora
