#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {
namespace {

class AccessibilityTrustTest : public ReadingFixture {};

TEST_F(AccessibilityTrustTest, FirstAnswerIsTheSessionsOwn) {
  EXPECT_TRUE(accessibility->isTrusted());
  setEnabled(bus, false);
  EXPECT_FALSE(makeLinuxAccessibility()->isTrusted());
}

TEST_F(AccessibilityTrustTest, WithoutABusNothingIsTrustedAndNothingWaits) {
  for (const char* address : {"unix:path=/nonexistent/bus", "nonsense"}) {
    setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
    const auto alone = makeLinuxAccessibility();
    EXPECT_LT(seconds([&] { EXPECT_FALSE(alone->isTrusted()); }), 0.2) << address;
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
  const double first = seconds([&] { EXPECT_FALSE(accessibility->isTrusted()); });
  EXPECT_LT(first, 0.25 + 0.5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_LT(seconds([&] { EXPECT_FALSE(accessibility->isTrusted()); }), 0.2);
  }
  EXPECT_LT(seconds([&] { accessibility->requestTrust(); }), 0.2);
  services->resume();
  EXPECT_TRUE(eventually([&] { return accessibility->isTrusted(); }));
}

TEST_F(AccessibilityTrustTest, AServiceThatHangsLaterLeavesTheLastAnswer) {
  ASSERT_TRUE(accessibility->isTrusted());
  services->stop();
  EXPECT_LT(seconds([&] { EXPECT_TRUE(accessibility->isTrusted()); }), 0.2);
}

}  // namespace
}  // namespace vellora
