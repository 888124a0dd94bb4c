#include <csignal>
#include <memory>

#include <gtest/gtest.h>

#include "panel_fixture.h"

namespace vellora {
namespace {

// With the real compositor.
class PanelCompositedTest : public PanelFixture {
 protected:
  void startCompositor(std::vector<std::string> extra = {}) {
    std::vector<std::string> arguments{"picom", "--backend", "xrender", "--config", "/dev/null"};
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    compositor = std::make_unique<ChildProgram>(arguments, server.display());
    ASSERT_TRUE(runLoopUntil([&] { return client.owner("_NET_WM_CM_S0") != XCB_WINDOW_NONE; }));
  }

  std::unique_ptr<ChildProgram> compositor;
};

TEST_F(PanelCompositedTest, WhatIsBelowShowsThroughAndIsTinted) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  startCompositor();
  showOnePicture();
  pictures.push_back({plainPicture(100, 40, 0, {1, 1, 1, 0.5}), {50, 200, 100, 40}});
  view->setNeedsDisplay();
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  // Inside the panel, no caption there.
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(300, 150) == backdrop; }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 270) >> 16 > 0x80; }));
  const std::uint32_t tinted = client.pixel(200, 270);
  EXPECT_NEAR(tinted >> 16, (0x30 + 0xff) / 2, 2);
  EXPECT_NEAR(tinted >> 8 & 0xff, (0x60 + 0xff) / 2, 2);
  EXPECT_NEAR(tinted & 0xff, (0xc0 + 0xff) / 2, 2);
}

TEST_F(PanelCompositedTest, NoShadowFallsAroundIt) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  startCompositor({"--shadow", "--shadow-opacity=1", "--shadow-radius=20"});
  // Another window shows that shadows are on at all.
  client.makeWindow({700, 200, 200, 200}, 0x808080);
  ASSERT_TRUE(runLoopUntil([&] { return client.pixel(905, 405) != backdrop; }));
  showOnePicture();
  ASSERT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  for (const int distance : {1, 3, 8, 15}) {
    EXPECT_EQ(client.pixel(500 + distance, 200), backdrop);
    EXPECT_EQ(client.pixel(300, 350 + distance), backdrop);
    EXPECT_EQ(client.pixel(100 - distance, 200), backdrop);
    EXPECT_EQ(client.pixel(300, 200), backdrop);
  }
}

TEST_F(PanelCompositedTest, FallsBackToPlatesWhenTheCompositorDies) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  startCompositor();
  showOnePicture();
  EXPECT_EQ(client.boundingShape(own()), std::nullopt);
  compositor->end(SIGKILL);
  EXPECT_TRUE(runLoopUntil([&] { return client.boundingShape(own()) != std::nullopt; }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(300, 150) == backdrop; }));
}

}  // namespace
}  // namespace vellora
