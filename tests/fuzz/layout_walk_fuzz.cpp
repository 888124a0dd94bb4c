#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "music/lyrics_layout_reader.h"
#include "support/fake_accessibility.h"
#include "support/fake_clock.h"

namespace vellora {

namespace {

constexpr std::int32_t process = 7;

// The elements that the bytes tell of: each one's attributes, and children among all of them, so
// that there may be circles.
class Tree {
 public:
  explicit Tree(FuzzInput& input) {
    const std::size_t count = 1 + input.below(64);
    for (std::size_t i = 0; i < count; ++i) elements_.push_back(fakeElement());
    for (const auto& element : elements_) fill(*element, input);
  }
  ~Tree() {
    for (const auto& element : elements_) element->values.clear();  // which breaks the circles
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  const std::vector<std::shared_ptr<FakeElement>>& elements() const { return elements_; }

 private:
  void fill(FakeElement& element, FuzzInput& input) {
    static constexpr std::string_view names[] = {
        AccessibilityAttribute::role,        AccessibilityAttribute::title,
        AccessibilityAttribute::description, AccessibilityAttribute::identifier,
        AccessibilityAttribute::position,    AccessibilityAttribute::size,
        AccessibilityAttribute::children,    AccessibilityAttribute::minimized};
    for (std::size_t left = input.below(10); left > 0; --left) {
      const std::string_view name = names[input.below(std::size(names))];
      element.set(name, value(input));
    }
  }
  AttributeValue value(FuzzInput& input) {
    static constexpr std::string_view texts[] = {
        "AXButton", "AXScrollArea", "Lyrics", musicPlayer.titleIdentifier, "Hello", ""};
    switch (input.below(8)) {
      case 0:
        return std::monostate();
      case 1:
        return std::string(texts[input.below(std::size(texts))]);
      case 2:
        return std::string(input.takeBytes(input.below(12)));
      case 3:
        return input.flag();
      case 4:
        return Point{input.number(), input.number()};
      case 5:
        return Size{input.number(), input.number()};
      case 6:  // an ordinary frame
        return input.flag()
                   ? AttributeValue(Point{double(input.below(256)), double(input.below(256))})
                   : AttributeValue(Size{double(input.below(256)), double(input.below(256))});
      default: {
        AccessibilityElements children;
        for (std::size_t left = input.below(9); left > 0; --left) {
          const std::size_t index = input.below(elements_.size() + 1);
          children.push_back(index < elements_.size() ? elements_[index] : nullptr);
        }
        return children;
      }
    }
  }

  std::vector<std::shared_ptr<FakeElement>> elements_;
};

// The walk as a person would do it by hand, with a clock that stands still.
struct PlainWalk {
  MusicLayout layout;
  int left;
  int deepest;

  void visit(AccessibilityElement& element, bool inside, int depth) {
    if (left == 0 || depth > deepest) return;
    --left;
    const std::string role = string(element, "AXRole");
    const std::string description = string(element, "AXDescription");
    const std::string title = string(element, "AXTitle");
    if (string(element, "AXIdentifier") == "Music.nowPlaying.title-Music.nowPlaying.subtitle") {
      layout.title = !description.empty() ? description : title;
    }
    if (description == "Lyrics" || title == "Lyrics") inside = true;
    const auto area = frame(element);
    if (inside && role == "AXScrollArea" && area) {
      layout.viewport = area->intersection(layout.window);
    }
    const std::string text = !title.empty() ? title : description;
    if (inside && role == "AXButton" && area && !text.empty()) layout.rows.push_back({text, *area});
    const AttributeValue children = attribute(element, "AXChildren");
    if (const auto* list = std::get_if<AccessibilityElements>(&children)) {
      for (const auto& child : *list) {
        if (child) visit(*child, inside, depth + 1);
      }
    }
  }
};

bool same(double a, double b) { return a == b || (a != a && b != b); }
bool same(const Rect& a, const Rect& b) {
  return same(a.x, b.x) && same(a.y, b.y) && same(a.width, b.width) && same(a.height, b.height);
}

void requireSame(const MusicLayout& read, MusicLayout plain) {
  require(same(read.window, plain.window), "the window");
  require(same(read.viewport, plain.viewport), "the viewport");
  require(read.title == plain.title, "the title");
  require(read.rows.size() == plain.rows.size(), "the number of rows");
  // Where a top is not a number, no order is promised but that of the others.
  std::erase_if(plain.rows, [](const MusicRow& row) { return row.frame.y != row.frame.y; });
  std::ranges::stable_sort(plain.rows, {}, [](const MusicRow& row) { return row.frame.y; });
  for (std::size_t i = 0; i < plain.rows.size(); ++i) {
    require(read.rows[i].text == plain.rows[i].text, "a row's text");
    require(same(read.rows[i].frame, plain.rows[i].frame), "a row's frame");
  }
  for (const MusicRow& row : read.rows) {
    require(!row.text.empty() && row.frame.width > 0 && row.frame.height > 0, "a row");
  }
}

}  // namespace

void fuzzLayoutWalk(std::string_view bytes) {
  FuzzInput input(bytes);
  const ReadingLimits limits{.elements = static_cast<int>(1 + 4 * input.below(175)),
                             .depth = static_cast<int>(input.below(24))};
  const Tree tree(input);
  FakeElement& window = *tree.elements().front();
  const auto application = fakeElement();
  if (input.below(8) > 0) application->windows({tree.elements().front(), tree.elements().back()});
  FakeAccessibility accessibility;
  accessibility.applications[process] = application;
  const FakeClock clock;
  const auto read = readMusic(process, accessibility, clock, musicPlayer, limits);

  const AttributeValue minimized = window.attribute("AXMinimized");
  const bool* const isMinimized = std::get_if<bool>(&minimized);
  const auto area = frame(window);
  const bool readable = application->values.contains("AXWindows") &&
                        !(isMinimized != nullptr && *isMinimized) && area;
  require(read.has_value() == readable, "a layout for a window that can be read");
  if (!read) return;
  PlainWalk plain{{}, limits.elements, limits.depth};
  plain.layout.window = *area;
  plain.visit(window, false, 0);
  requireSame(*read, std::move(plain.layout));
}

}  // namespace vellora
