#include "contracts/accessibility_contract.h"

#include <chrono>
#include <functional>
#include <limits>
#include <thread>
#include <variant>

#include "music/lyrics_layout_reader.h"
#include "platform/system_clock.h"

namespace vellora {
namespace {

const ReadingLimits limits;

// Programs appear and answer in their own time.
bool eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::yield();
  }
  return true;
}

std::optional<MusicLayout> read(AccessibilitySubject& subject) {
  return readMusic(subject.process(), subject.accessibility(), SystemClock());
}

bool isReadable(AccessibilitySubject& subject) {
  const auto rows = subject.expected().rows.size();
  return eventually([&] {
    const auto layout = read(subject);
    return layout && layout->rows.size() == rows;
  });
}

std::shared_ptr<AccessibilityElement> application(AccessibilitySubject& subject) {
  return subject.accessibility().applicationElement(subject.process(), musicPlayer, limits);
}

AccessibilityElements list(AccessibilityElement& element, std::string_view attribute) {
  const AttributeValue value = element.attribute(attribute);
  const auto* const elements = std::get_if<AccessibilityElements>(&value);
  return elements != nullptr ? *elements : AccessibilityElements();
}

void expectNothing(AccessibilityElement& element) {
  for (const std::string_view name :
       {AccessibilityAttribute::windows, AccessibilityAttribute::minimized,
        AccessibilityAttribute::role, AccessibilityAttribute::description,
        AccessibilityAttribute::title, AccessibilityAttribute::identifier,
        AccessibilityAttribute::children, AccessibilityAttribute::position,
        AccessibilityAttribute::size}) {
    EXPECT_EQ(element.attribute(name), AttributeValue()) << name;
  }
}

}  // namespace

TEST_P(AccessibilityContract, AWindowIsReadAsItsProgramShowsIt) {
  ASSERT_TRUE(isReadable(*subject));
  const MusicLayout expected = subject->expected();
  const MusicLayout layout = read(*subject).value_or(MusicLayout());
  EXPECT_EQ(layout.window, expected.window);
  EXPECT_EQ(layout.viewport, expected.viewport);
  EXPECT_EQ(layout.title, expected.title);
  ASSERT_EQ(layout.rows.size(), expected.rows.size());
  for (std::size_t i = 0; i < expected.rows.size(); ++i) {
    EXPECT_EQ(layout.rows[i].text, expected.rows[i].text);
    EXPECT_EQ(layout.rows[i].frame, expected.rows[i].frame);
  }
}

TEST_P(AccessibilityContract, AttributesHaveTheirKindsAndOthersAreNothing) {
  ASSERT_TRUE(isReadable(*subject));
  const auto windows = list(*application(*subject), AccessibilityAttribute::windows);
  ASSERT_EQ(windows.size(), 1u);
  AccessibilityElement& window = *windows[0];
  EXPECT_EQ(window.attribute(AccessibilityAttribute::minimized), AttributeValue(false));
  EXPECT_EQ(window.attribute(AccessibilityAttribute::role),
            AttributeValue(std::string("AXWindow")));
  const Rect frame = subject->expected().window;
  EXPECT_EQ(window.attribute(AccessibilityAttribute::position),
            AttributeValue(Point{frame.x, frame.y}));
  EXPECT_EQ(window.attribute(AccessibilityAttribute::size),
            AttributeValue(Size{frame.width, frame.height}));
  EXPECT_FALSE(list(window, AccessibilityAttribute::children).empty());
  EXPECT_EQ(window.attribute("AXNoSuchAttribute"), AttributeValue());
}

TEST_P(AccessibilityContract, AnotherThreadMayRead) {
  ASSERT_TRUE(isReadable(*subject));
  std::size_t rows = 0;
  std::thread([&] {
    eventually([&] {
      rows = read(*subject).value_or(MusicLayout()).rows.size();
      return rows != 0;
    });
  }).join();
  EXPECT_EQ(rows, subject->expected().rows.size());
}

TEST_P(AccessibilityContract, AProcessThatIsNotThereAnswersNothing) {
  for (const std::int32_t process : {-1, std::numeric_limits<std::int32_t>::max()}) {
    const auto element = subject->accessibility().applicationElement(process, musicPlayer, limits);
    ASSERT_TRUE(element);
    expectNothing(*element);
  }
}

TEST_P(AccessibilityContract, AProgramThatHangsAnswersNothingUntilItGoesOn) {
  ASSERT_TRUE(isReadable(*subject));
  subject->hang();
  EXPECT_FALSE(read(*subject));
  subject->goOn();
  EXPECT_TRUE(isReadable(*subject));
}

TEST_P(AccessibilityContract, AnElementWhoseProgramHasEndedAnswersNothing) {
  ASSERT_TRUE(isReadable(*subject));
  const auto element = application(*subject);
  subject->end();
  EXPECT_TRUE(eventually(
      [&] { return element->attribute(AccessibilityAttribute::windows) == AttributeValue(); }));
  expectNothing(*element);
  EXPECT_FALSE(read(*subject));
}

TEST_P(TrustContract, WithoutTrustNoElementAnswers) {
  ASSERT_TRUE(subject->accessibility().isTrusted());
  ASSERT_TRUE(isReadable(*subject));
  subject->trust(false);
  EXPECT_TRUE(eventually([&] { return !subject->accessibility().isTrusted(); }));
  const auto element = application(*subject);
  ASSERT_TRUE(element);
  expectNothing(*element);
  subject->trust(true);
  EXPECT_TRUE(eventually([&] { return subject->accessibility().isTrusted(); }));
  EXPECT_TRUE(isReadable(*subject));
}

}  // namespace vellora
