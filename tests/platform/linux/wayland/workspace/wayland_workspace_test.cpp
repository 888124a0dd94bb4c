#include "platform/linux/wayland/workspace/wayland_workspace.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/player.h"

namespace vellora {
namespace {

// Tells what the test says.
class FakeLocator final : public WindowLocator {
 public:
  std::string name() const override { return "the test"; }
  bool isKnown() const override { return true; }
  std::optional<LocatedWindow> frontWindow() const override {
    if (all.empty() || !all[0].isActive || !all[0].isVisible) return std::nullopt;
    return all[0];
  }
  std::vector<LocatedWindow> windows() const override { return all; }
  void whenChanged(std::function<void()> listener) override { changed = std::move(listener); }
  void setWatched(bool watched) override { isWatched = watched; }

  std::vector<LocatedWindow> all;
  std::function<void()> changed;
  bool isWatched = false;
};

class WaylandWorkspaceTest : public testing::Test {
 protected:
  WaylandWorkspaceTest() {
    auto description = std::make_shared<PlayerDescription>();
    description->identifier = "player";
    description->windowClasses = {"org.example.Player"};
    auto made = std::make_unique<FakeLocator>();
    locator = made.get();
    workspace = std::make_unique<WaylandWorkspace>(
        std::move(made),
        WaylandScreens{.primaryHeight = [] { return 800; },
                       .primaryScale = [] { return 2; },
                       .largestScale = [this] { return largest; },
                       .scaleUnder = [this](const Rect&) { return scale; }},
        std::vector<PlayerDescriptionPtr>{description}, windows);
  }
  static LocatedWindow window(std::int32_t process, const std::string& application,
                              bool isActive = false) {
    LocatedWindow made;
    made.process = process;
    made.names.applicationId = application;
    made.content = {10.0 * process, 20, 400, 300};
    made.isActive = isActive;
    return made;
  }
  void tell(std::vector<LocatedWindow> all) const {
    locator->all = std::move(all);
    locator->changed();
  }
  std::vector<std::int32_t> running(std::string_view identifier) const {
    std::vector<std::int32_t> processes;
    for (const auto& one : workspace->runningApplications(identifier)) {
      processes.push_back(one->processIdentifier());
    }
    return processes;
  }

  double scale = 1;
  double largest = 1;
  std::shared_ptr<PlayerWindows> windows = std::make_shared<PlayerWindows>();
  FakeLocator* locator = nullptr;
  std::unique_ptr<WaylandWorkspace> workspace;
};

TEST_F(WaylandWorkspaceTest, TheWindowWithTheKeyboardIsInFront) {
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  tell({window(5, "org.example.Editor", true), window(6, "org.example.Player")});
  const auto front = workspace->frontmostApplication();
  ASSERT_NE(front, nullptr);
  EXPECT_EQ(front->processIdentifier(), 5);
  EXPECT_EQ(front->bundleIdentifier(), "org.example.Editor");
  EXPECT_FALSE(locator->isWatched);
  tell({});
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
}

TEST_F(WaylandWorkspaceTest, ADescribedPlayerInFrontIsThePlayerAndItsPlaceIsWatched) {
  tell({window(6, "org.example.Player", true)});
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier(), musicPlayer.identifier);
  EXPECT_TRUE(locator->isWatched);
  const auto known = windows->find(6);
  ASSERT_TRUE(known && known->surfaces && known->surfaces->size() == 1);
  EXPECT_EQ(known->surfaces->front().content, Rect({60, 20, 400, 300}));
  EXPECT_FALSE(known->clientArea.has_value());
  EXPECT_EQ(known->descriptions.size(), 1U);
  tell({window(5, "org.example.Editor", true), window(6, "org.example.Player")});
  EXPECT_FALSE(locator->isWatched);
}

TEST_F(WaylandWorkspaceTest, ThePlayersWindowsAreKeptAlsoWhileNobodyAsks) {
  tell({window(5, "a.b", true), window(6, "org.example.Player"), window(7, "org.example.Player")});
  ASSERT_EQ(windows->all().size(), 2U);
  tell({window(7, "org.example.Player", true), window(5, "a.b")});
  ASSERT_EQ(windows->all().size(), 1U);
  EXPECT_EQ(windows->all()[0].process, 7);
}

TEST_F(WaylandWorkspaceTest, AllWindowsOfAProcessThatCanBeSeenAreItsSurfaces) {
  LocatedWindow hidden = window(6, "org.example.Player");
  hidden.isVisible = false;
  LocatedWindow dialog = window(6, "org.example.Player");
  dialog.content = {1, 2, 3, 4};
  dialog.surface = Rect{0, 1, 5, 6};
  tell({window(6, "org.example.Player", true), hidden, dialog, window(5, "a.b")});
  const auto known = windows->find(6);
  ASSERT_TRUE(known && known->surfaces && known->surfaces->size() == 2);
  EXPECT_EQ(known->surfaces->at(1), (SurfacePlace{{1, 2, 3, 4}, Rect{0, 1, 5, 6}}));
}

TEST_F(WaylandWorkspaceTest, AnX11ProgramKnowsWhereItIs) {
  LocatedWindow x11 = window(6, "", true);
  x11.names.classPart = "org.example.Player";
  x11.tellsScreenPositions = true;
  tell({x11});
  const auto known = windows->find(6);
  ASSERT_TRUE(known.has_value());
  EXPECT_FALSE(known->surfaces.has_value());
  EXPECT_EQ(known->clientArea, x11.content);
}

TEST_F(WaylandWorkspaceTest, AnX11ProgramMayScaleItselfByTheLargestScaleOfAll) {
  LocatedWindow x11 = window(6, "", true);
  x11.names.classPart = "org.example.Player";
  x11.tellsScreenPositions = true;
  tell({x11});
  largest = 2;
  workspace->frontmostApplication();
  const auto known = windows->find(6);
  ASSERT_TRUE(known && known->surfaces && known->surfaces->size() == 1);
  EXPECT_EQ(known->surfaces->front().serversPixels, 2);
  EXPECT_EQ(known->scale, 1);
}

TEST_F(WaylandWorkspaceTest, NamesInLowerCaseAreThoseOfTheDescriptions) {
  LocatedWindow x11 = window(6, "", true);
  x11.names.classPart = "org.example.player";
  tell({x11});
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier(), "org.example.player");
  x11.areNamesInLowerCase = true;
  tell({x11});
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier(), musicPlayer.identifier);
  x11.names.classPart = "com.apple.music";
  tell({x11});
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier(), musicPlayer.identifier);
}

TEST_F(WaylandWorkspaceTest, RunningProgramsAreListedOnceInTheLocatorsOrder) {
  tell({window(9, "org.example.Player", true), window(5, "a.b"), window(9, "org.example.Player"),
        window(4, "org.example.Player")});
  EXPECT_EQ(running(musicPlayer.identifier), std::vector<std::int32_t>({9, 4}));
  EXPECT_EQ(running("a.b"), std::vector<std::int32_t>({5}));
  EXPECT_TRUE(running("c.d").empty());
}

TEST_F(WaylandWorkspaceTest, AnOutputOfAnotherScaleIsNoticed) {
  tell({window(6, "org.example.Player", true)});
  EXPECT_EQ(windows->find(6)->scale, 1);
  scale = 1.5;
  workspace->frontmostApplication();
  EXPECT_EQ(windows->find(6)->scale, 1.5);
  EXPECT_EQ(workspace->primaryScreenHeight(), 800);
  EXPECT_EQ(workspace->mainScreenScale(), 2);
}

}  // namespace
}  // namespace vellora
