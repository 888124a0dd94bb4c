// What is done at a tick and with the player's window: a steady tick, the walk through a window's
// elements, and the composition of what the walk has found.
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "controller/overlay_delegate.h"
#include "cost/hot_path.h"
#include "exchange/records/json.h"
#include "music/lyrics_layout_reader.h"
#include "support/fake_platform.h"
#include "support/gliding_view.h"
#include "support/temporary_folder.h"
#include "support/verse.h"

namespace vellora {
namespace {

constexpr std::int32_t process = 4711;
constexpr const char* windowTitle = "Night Drive — River Band";

OverlaySnapshot snapshotAt(double now) {
  return {1, now, true, "Night Drive", "River Band", 32, 0, verse::makeLines(0, 60)};
}

// A reading is under way, and neither file has changed.
class SteadyTick {
 public:
  SteadyTick() {
    writeText(folder_ / "snapshot.json", encode(snapshotAt(platform_.clock->now())).value());
    writeText(folder_ / "sync.json", encode(SyncRequest{platform_.clock->now()}).value());
    controller_ = std::make_shared<OverlayDelegate>(folder_ / "snapshot.json", platform_, output_);
    platform_.workspace->frontmost =
        std::make_shared<FakeRunningApplication>("com.apple.Music", process);
  }
  bool run() {
    controller_->tick();
    platform_.log.clear();
    return controller_->scanning;
  }

 private:
  TemporaryFolder folder_;
  FakePlatform platform_;
  std::ostringstream output_;
  std::shared_ptr<OverlayDelegate> controller_;
};

// An element whose answers cost little beside what the walk does with them.
struct PlainElement final : AccessibilityElement {
  AttributeValue attribute(std::string_view name) override {
    if (name == AccessibilityAttribute::role) return std::string(role);
    if (name == AccessibilityAttribute::title) return title;
    if (name == AccessibilityAttribute::description) return description;
    if (name == AccessibilityAttribute::identifier) return identifier;
    if (name == AccessibilityAttribute::children) return children;
    if (name == AccessibilityAttribute::windows) return windows;
    if (name == AccessibilityAttribute::position) return Point{frame.x, frame.y};
    if (name == AccessibilityAttribute::size) return Size{frame.width, frame.height};
    return {};
  }
  std::string_view role = AccessibilityRole::unknown;
  std::string title, description, identifier;
  AccessibilityElements children, windows;
  Rect frame;
};

constexpr int treeRows =
    696;  // 700 elements with the window, the title, the view and what holds it

std::shared_ptr<PlainElement> windowOf700() {
  const auto label = std::make_shared<PlainElement>();
  label->identifier = musicPlayer.titleIdentifier;
  label->description = windowTitle;
  const auto view = std::make_shared<PlainElement>();
  view->role = AccessibilityRole::scrollArea;
  view->description = musicPlayer.lyricsLabel;
  view->frame = {600, 100, 580, 650};
  const auto lines = verse::makeLines(0, treeRows);
  for (int i = 0; i < treeRows; ++i) {
    const auto row = std::make_shared<PlainElement>();
    row->role = AccessibilityRole::button;
    row->title = lines[static_cast<std::size_t>(i)].source;
    row->frame = {620, 100.0 + 60 * i, 360, 40};
    view->children.push_back(row);
  }
  const auto box = std::make_shared<PlainElement>();
  box->children = {label, view};
  const auto window = std::make_shared<PlainElement>();
  window->role = AccessibilityRole::window;
  window->frame = {0, 30, 1200, 800};
  window->children = {box};
  return window;
}

HotPath walking() {
  const auto application = std::make_shared<PlainElement>();
  application->windows = {windowOf700()};
  const auto accessibility = std::make_shared<FakeAccessibility>();
  accessibility->applications[process] = application;
  return {"walk through 700 elements", 10, [accessibility] {
            const FakeClock clock;
            const auto layout = readMusic(process, *accessibility, clock);
            return layout && layout->rows.size() == treeRows && layout->title == windowTitle;
          }};
}

}  // namespace

std::vector<HotPath> windowPaths() {
  const auto tick = std::make_shared<SteadyTick>();
  const auto few = std::make_shared<GlidingView>(15);
  const auto many = std::make_shared<GlidingView>(300);
  return {{"a steady tick", 50, [tick] { return tick->run(); }},
          walking(),
          {"compose a reading of 15 rows", 20, [few] { return few->compose(); }},
          {"compose a reading of 300 rows", 4, [many] { return many->compose(); }}};
}

}  // namespace vellora
