#import "platform/macos/accessibility.h"

#include <chrono>
#include <csignal>
#include <limits>
#include <memory>
#include <optional>
#include <thread>
#include <variant>

#include <gtest/gtest.h>

#include "music/lyrics_layout_reader.h"
#include "platform/system_clock.h"
#include "reading_window_process.h"

namespace vellora {
namespace {

using Time = std::chrono::steady_clock;
using std::chrono::duration;

constexpr float messagingTimeout = 0.08F;

// The program that starts the tests, a terminal for instance, must be allowed under System Settings
// → Privacy & Security → Accessibility.
class AccessibilityTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(accessibility->isTrusted())
        << "The program that runs these tests may not read other programs' windows: allow it in "
           "System Settings → Privacy & Security → Accessibility, then start it anew.";
  }

  std::optional<MusicLayout> read(pid_t pid) { return readMusic(pid, *accessibility, clock); }

  // A program answers some moments after its window is there.
  std::optional<MusicLayout> readWhenReady(const ReadingWindowProcess& window) {
    const auto deadline = Time::now() + std::chrono::seconds(10);
    std::optional<MusicLayout> layout = read(window.pid());
    while ((!layout || layout->rows.size() < window.expected().rows.size()) &&
           Time::now() < deadline) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      layout = read(window.pid());
    }
    return layout;
  }

  const std::shared_ptr<Accessibility> accessibility = makeAxAccessibility();
  const SystemClock clock;
};

TEST_F(AccessibilityTest, ReadsAWindowAsItsProgramShowsIt) {
  const ReadingWindowProcess window;
  const auto layout = readWhenReady(window);
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->window, window.expected().window);
  EXPECT_EQ(layout->viewport, window.expected().viewport);
  EXPECT_EQ(layout->title, window.expected().title);
  ASSERT_EQ(layout->rows.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(layout->rows[i].text, window.expected().rows[i].text);
    EXPECT_EQ(layout->rows[i].frame, window.expected().rows[i].frame);
  }
}

TEST_F(AccessibilityTest, AttributesHaveTheirKindsAndOthersAreNothing) {
  const ReadingWindowProcess window;
  ASSERT_TRUE(readWhenReady(window));
  const auto application = accessibility->applicationElement(window.pid(), messagingTimeout);
  const AttributeValue windows = application->attribute(AccessibilityAttribute::windows);
  ASSERT_TRUE(std::holds_alternative<AccessibilityElements>(windows));
  const auto& list = std::get<AccessibilityElements>(windows);
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0]->attribute(AccessibilityAttribute::minimized), AttributeValue(false));
  EXPECT_EQ(list[0]->attribute(AccessibilityAttribute::role),
            AttributeValue(std::string("AXWindow")));
  EXPECT_TRUE(std::holds_alternative<Point>(list[0]->attribute(AccessibilityAttribute::position)));
  EXPECT_TRUE(std::holds_alternative<Size>(list[0]->attribute(AccessibilityAttribute::size)));
  EXPECT_TRUE(std::holds_alternative<std::monostate>(list[0]->attribute("AXNoSuchAttribute")));
}

TEST_F(AccessibilityTest, AProcessThatIsNotThereGivesNothing) {
  pid_t pid = 0;
  {
    const ReadingWindowProcess window;
    pid = window.pid();
  }
  EXPECT_EQ(read(pid), std::nullopt);
  EXPECT_EQ(read(-1), std::nullopt);
  EXPECT_EQ(read(std::numeric_limits<pid_t>::max()), std::nullopt);
}

TEST_F(AccessibilityTest, AProgramThatHangsIsGivenUpSoon) {
  const ReadingWindowProcess window;
  ASSERT_TRUE(readWhenReady(window));
  ASSERT_EQ(kill(window.pid(), SIGSTOP), 0);
  const auto before = Time::now();
  EXPECT_EQ(read(window.pid()), std::nullopt);
  EXPECT_LT(duration<double>(Time::now() - before).count(), 1);
  kill(window.pid(), SIGCONT);
  EXPECT_TRUE(readWhenReady(window));
}

}  // namespace
}  // namespace vellora
