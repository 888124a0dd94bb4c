#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/plain_element.h"
#include "platform/linux/accessibility/plain_reading.h"
#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;

constexpr std::uint64_t active = 1U << 1U;
constexpr std::uint64_t iconified = 1U << 15U;

class AccessibilityReadingTest : public ReadingFixture {
 protected:
  AccessibilityElements windows() {
    const auto value = accessibility->applicationElement(player->pid(), musicPlayer, patient)
                           ->attribute("AXWindows");
    const auto* list = std::get_if<AccessibilityElements>(&value);
    return list != nullptr ? *list : AccessibilityElements();
  }
};

TEST_F(AccessibilityReadingTest, EveryAttributeComesFromItsPlace) {
  FakeProgram program = programWithRows(0);
  add(program, 1,
      {.role = FakeRole::button,
       .name = "the name",
       .description = "the description",
       .identifier = "the.identifier",
       .extents = std::array<std::int32_t, 4>{-5, INT32_MIN, 7, 8}});
  start(program);
  const auto list = windows();
  ASSERT_EQ(list.size(), 1U);
  AccessibilityElement& window = *list.front();
  EXPECT_EQ(window.attribute("AXRole"), AttributeValue(std::string("AXWindow")));
  EXPECT_EQ(window.attribute("AXMinimized"), AttributeValue(false));
  EXPECT_EQ(window.attribute("AXPosition"), AttributeValue(Point{0, 0}));
  EXPECT_EQ(window.attribute("AXSize"), AttributeValue(Size{1000, 700}));
  EXPECT_EQ(window.attribute("AXWindows"), AttributeValue());
  EXPECT_EQ(window.attribute("AXValue"), AttributeValue());
  const auto children = std::get<AccessibilityElements>(window.attribute("AXChildren"));
  ASSERT_EQ(children.size(), 1U);
  AccessibilityElement& button = *children.front();
  EXPECT_EQ(button.attribute("AXRole"), AttributeValue(std::string("AXButton")));
  EXPECT_EQ(button.attribute("AXTitle"), AttributeValue(std::string("the name")));
  EXPECT_EQ(button.attribute("AXDescription"), AttributeValue(std::string("the description")));
  EXPECT_EQ(button.attribute("AXIdentifier"), AttributeValue(std::string("the.identifier")));
  EXPECT_EQ(button.attribute("AXPosition"), AttributeValue(Point{-5, -2147483648.0}));
  EXPECT_EQ(button.attribute("AXSize"), AttributeValue(Size{7, 8}));
  EXPECT_EQ(button.attribute("AXMinimized"), AttributeValue());
  EXPECT_EQ(button.attribute("AXChildren"), AttributeValue(AccessibilityElements()));
}

TEST_F(AccessibilityReadingTest, ActiveWindowIsFirstAndTheOthersKeepTheirOrder) {
  FakeProgram program;
  program.objects.resize(1);
  for (const char* name : {"first", "second", "active", "last"}) {
    add(program, 0, {.role = FakeRole::frame, .name = name});
  }
  program.objects[3].states = active;
  start(program);
  std::vector<std::string> names;
  for (const auto& window : windows()) names.push_back(string(*window, "AXTitle"));
  EXPECT_THAT(names, ElementsAre("active", "first", "second", "last"));
}

TEST_F(AccessibilityReadingTest, AnActivePopupComesAfterFramesAndDialogs) {
  FakeProgram program;
  program.objects.resize(1);
  add(program, 0, {.role = FakeRole::window, .name = "menu", .states = active});
  add(program, 0, {.role = FakeRole::frame, .name = "music"});
  add(program, 0, {.role = FakeRole::dialog, .name = "dialog"});
  start(program);
  for (int reading = 0; reading < 3; ++reading) {
    std::vector<std::string> names;
    for (const auto& window : windows()) names.push_back(string(*window, "AXTitle"));
    EXPECT_THAT(names, ElementsAre("music", "dialog", "menu"));
  }
}

TEST_F(AccessibilityReadingTest, AnActiveWindowOfAnotherToolkitIsFirstWhateverItsRole) {
  FakeProgram program;
  program.toolkit = "Qt";
  program.objects.resize(1);
  add(program, 0, {.role = FakeRole::frame, .name = "frame"});
  add(program, 0, {.role = FakeRole::window, .name = "music", .states = active});
  start(program);
  for (int reading = 0; reading < 3; ++reading) {
    std::vector<std::string> names;
    for (const auto& window : windows()) names.push_back(string(*window, "AXTitle"));
    EXPECT_THAT(names, ElementsAre("music", "frame"));
  }
}

TEST_F(AccessibilityReadingTest, AMenuThatOpensLeavesTheWindowInFront) {
  FakeProgram program = programWithRows(3);
  program.objects[1].states = active;
  program.objects.push_back({.role = FakeRole::window, .states = active});
  start(program);
  EXPECT_EQ(readRows(3).rows.size(), 3U);
  FakeAccessible inactive = program.objects[1];
  inactive.states = 0;
  player->change(1, inactive);
  FakeAccessible root = program.objects[0];
  root.children = {program.objects.size() - 1, 1};
  player->change(0, root, FakeProgramProcess::childrenChanged);
  EXPECT_EQ(readRows(3).rows.size(), 3U);
  EXPECT_EQ(windows().size(), 2U);
}

TEST_F(AccessibilityReadingTest, APopupAloneIsTheFirstWindow) {
  FakeProgram program = programWithRows(2);
  program.objects[1].role = FakeRole::window;
  start(program);
  EXPECT_EQ(readRows(2).rows.size(), 2U);
}

TEST_F(AccessibilityReadingTest, IconifiedWindowIsMinimised) {
  FakeProgram program = programWithRows(1);
  program.objects[1].states = iconified | active;
  start(program);
  ASSERT_EQ(windows().size(), 1U);
  EXPECT_EQ(windows().front()->attribute("AXMinimized"), AttributeValue(true));
  EXPECT_FALSE(read().has_value());
}

TEST_F(AccessibilityReadingTest, RolesHaveTheReadersNames) {
  FakeProgram program = programWithRows(0);
  // Numbers of AtspiRole: push button, scroll pane, label, panel, toggle button, list item.
  for (const std::uint32_t role : {43U, 49U, 29U, 39U, 62U, 32U}) add(program, 1, {.role = role});
  start(program);
  std::vector<std::string> roles;
  const auto list = windows();
  ASSERT_EQ(list.size(), 1U);
  const AttributeValue children = list.front()->attribute("AXChildren");
  for (const auto& child : std::get<AccessibilityElements>(children)) {
    roles.push_back(string(*child, "AXRole"));
  }
  EXPECT_THAT(roles, ElementsAre("AXButton", "AXScrollArea", "AXStaticText", "AXUnknown",
                                 "AXUnknown", "AXUnknown"));
}

TEST_F(AccessibilityReadingTest, ProcessThatIsNotOnTheBusHasNoWindows) {
  start(programWithRows(3));
  EXPECT_FALSE(readMusic(getpid(), *accessibility, clock).has_value());
  EXPECT_FALSE(readMusic(-1, *accessibility, clock).has_value());
  EXPECT_EQ(player->counts().all, 0);
}

TEST_F(AccessibilityReadingTest, ProgramIsFoundAmongOthersByItsProcess) {
  FakeProgram other = programWithRows(1);
  other.objects[2].name = "of another program";
  const FakeProgramProcess first(bus, other);
  start(programWithRows(2));
  const FakeProgramProcess last(bus, other);
  EXPECT_THAT(texts(readRows(2)), ElementsAre("row 0", "row 1"));
}

TEST_F(AccessibilityReadingTest, SwitchedOffAccessibilityAnswersNothing) {
  start(programWithRows(3));
  setEnabled(bus, false);
  EXPECT_FALSE(read().has_value());
  EXPECT_EQ(player->counts().all, 0);
  setEnabled(bus, true);
  readRows(3);
}

TEST_F(AccessibilityReadingTest, NoBusAnswersNothingAtOnce) {
  start(programWithRows(3));
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  EXPECT_LT(seconds([&] { EXPECT_FALSE(read(patient).has_value()); }), hanging);
  setenv("DBUS_SESSION_BUS_ADDRESS", "nonsense", 1);
  EXPECT_FALSE(read().has_value());
  setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
  readRows(3);
}

TEST_F(AccessibilityReadingTest, AccessibilityBusThatIsNotThereAnswersNothing) {
  start(programWithRows(3));
  for (const char* address : {"", "unix:path=/nonexistent/bus", "nonsense"}) {
    services.reset();
    services = startServices(bus, {true, address});
    EXPECT_FALSE(read().has_value()) << address;
  }
}

TEST_F(AccessibilityReadingTest, EachReadingSeesThePlayerAsItIsNow) {
  start(programWithRows(2));
  readRows(2);
  player.reset();
  start(programWithRows(3));
  readRows(3);
}

TEST_F(AccessibilityReadingTest, ReadingsHandOneConnectionOn) {
  start(programWithRows(2));
  readRows(2);
  const std::size_t before = bus.connections();
  const std::size_t made = bus.connectionsMade();
  for (int i = 0; i < 20; ++i) readRows(2);
  EXPECT_EQ(bus.connectionsMade(), made + 1);
  EXPECT_EQ(bus.connections(), before);
}

TEST_F(AccessibilityReadingTest, ElementsOutliveTheAccessibilityObject) {
  start(programWithRows(2));
  const auto application =
      accessibility->applicationElement(player->pid(), musicPlayer, ReadingLimits());
  accessibility.reset();
  const auto value = application->attribute("AXWindows");
  const auto* list = std::get_if<AccessibilityElements>(&value);
  ASSERT_TRUE(list && list->size() == 1);
  EXPECT_EQ(string(*list->front(), "AXTitle"), "Lyrics");
}

// --- What the player is asked -----------------------------------------------------------------

TEST_F(AccessibilityReadingTest, PlayerIsAskedForPropertiesAndRolesOnceAndFramesOfRowsOnly) {
  FakeProgram program;
  program.objects.resize(2);
  program.objects[0].children = {1};
  program.objects[1] = {.role = FakeRole::frame,
                        .extents = std::array<std::int32_t, 4>{0, 0, 1000, 700}};
  for (int i = 0; i < 5; ++i) add(program, 1, row("outside", i));
  const auto area = add(program, 1,
                        {.role = FakeRole::scrollPane,
                         .description = "Lyrics",
                         .extents = std::array<std::int32_t, 4>{0, 0, 100, 100}});
  const auto box = add(program, area, {.role = FakeRole::panel});
  for (int i = 0; i < 20; ++i) add(program, box, row("row", i));
  ASSERT_TRUE(eventually([&] {
    start(program);  // counting from the start
    const auto layout = read();
    return layout && layout->rows.size() == 20;
  }));
  const CallCounts& counts = player->counts();
  EXPECT_EQ(counts.getAll, 29);   // the root, the window and all below it
  EXPECT_EQ(counts.role, 28);     // the window and all below it
  EXPECT_EQ(counts.children, 4);  // root, window, scroll area, box: the rest say they have none
  EXPECT_EQ(counts.extents, 22);  // window, scroll area, rows
  EXPECT_EQ(counts.states, 1);
  EXPECT_EQ(counts.get, 1);         // the toolkit
  EXPECT_EQ(counts.busAddress, 1);  // so that it signals its changes
  EXPECT_EQ(counts.all, 86);
}

// Its rows are labels, so that the buttons beside them are asked for no frame.
TEST_F(AccessibilityReadingTest, AnotherPlayersRowsAreWhatIsReadAndAskedFor) {
  Player other = musicPlayer;
  other.lyricsLabel = "Words";
  other.rowRole = AccessibilityRole::staticText;
  FakeProgram program = programWithRows(10);
  program.objects[1].name = "Words";
  for (int i = 0; i < 5; ++i) {
    FakeAccessible label = row("label " + std::to_string(i), 200 + i);
    label.role = FakeRole::label;
    program.objects.push_back(label);
    // Between the buttons.
    auto& children = program.objects[1].children;
    children.insert(children.begin() + 2 * i, program.objects.size() - 1);
  }
  start(program);
  const MusicLayout layout =
      readMusic(player->pid(), *accessibility, clock, other, patient).value_or(MusicLayout());
  EXPECT_THAT(texts(layout), ElementsAre("label 0", "label 1", "label 2", "label 3", "label 4"));
  EXPECT_EQ(player->counts().extents, 1 + 5);
}

TEST_F(AccessibilityReadingTest, TheProgramIsAskedAsFarAsTheLimitsOfItsReadingGo) {
  FakeProgram wide = programWithRows(100);
  start(wide);
  ReadingLimits limits = patient;
  limits.elements = 10;
  EXPECT_EQ(read(limits).value_or(MusicLayout()).rows.size(), 9U);
  EXPECT_EQ(player->counts().getAll, 1 + 10);  // the root's is one

  FakeProgram deep = programWithRows(0);
  std::size_t parent = 1;
  for (int depth = 1; depth <= 10; ++depth) {
    parent = add(deep, parent, row(std::to_string(depth), depth));
  }
  start(deep);
  limits.depth = 4;
  EXPECT_EQ(read(limits).value_or(MusicLayout()).rows.size(), 4U);
  EXPECT_EQ(player->counts().getAll, 1 + 5);
}

TEST_F(AccessibilityReadingTest, OnlyProgramsOfAToolkitThatKnowsItAreAskedForAllProperties) {
  for (const char* toolkit : {"Qt", "", "Chromium"}) {
    FakeProgram program = programWithRows(10);
    program.toolkit = toolkit;
    start(program);
    readRows(10);
    EXPECT_EQ(player->counts().getAll, 0) << toolkit;
  }
}

// --- The same as one call at a time -----------------------------------------------------------

FakeProgram randomProgram(unsigned seed) {
  std::mt19937 random(seed);
  const auto below = [&](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  FakeProgram program;
  program.toolkit = seed % 3 == 0 ? "Qt" : "gtk";
  const std::size_t count = 20 + static_cast<std::size_t>(below(400));
  program.objects.resize(count);
  program.objects[0].children = {1};
  for (std::size_t i = 1; i < count; ++i) {
    FakeAccessible& object = program.objects[i];
    constexpr std::array roles{43U, 43U, 49U, 39U, 29U};
    object.role = i == 1 ? 23U : roles.at(static_cast<std::size_t>(below(5)));
    if (below(3) > 0) object.name = "name " + std::to_string(below(50));
    if (below(4) == 0) object.description = "description " + std::to_string(below(50));
    if (below(12) == 0) object.name = "Lyrics";
    if (below(30) == 0) object.identifier = "Music.nowPlaying.title-Music.nowPlaying.subtitle";
    if (i == 1 || below(8) > 0) {
      object.extents =
          std::array<std::int32_t, 4>{below(900), below(600), 1 + below(100), 1 + below(90)};
    }
    if (below(25) == 0 && i > 1) object.answersWrongTypes = true;
    if (i > 1) {
      const auto parent = 1 + static_cast<std::size_t>(below(static_cast<int>(i) - 1));
      program.objects[below(3) > 0 ? std::max<std::size_t>(parent, i > 6 ? i - 6 : 1) : parent]
          .children.push_back(i);
    }
  }
  for (int i = 0; i < 10; ++i) {
    auto& list =
        program.objects[1 + static_cast<std::size_t>(below(static_cast<int>(count) - 1))].children;
    const std::array odd{FakeAccessible::nullChild, FakeAccessible::goneChild,
                         FakeAccessible::foreignChild,
                         seed % 6 == 0 ? std::size_t{1} : FakeAccessible::goneChild, count / 2};
    list.insert(list.begin() + below(static_cast<int>(list.size()) + 1),
                odd.at(static_cast<std::size_t>(below(5))));
  }
  return program;
}

TEST_F(AccessibilityReadingTest, VolleysReadWhatOneCallAtATimeReads) {
  std::size_t rowsSeen = 0;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    start(randomProgram(seed));
    PlainAccessibility plainly(PlainElement::program(bus.address(), player->busName()));
    const auto plain = readMusic(player->pid(), plainly, StoppedClock());
    ASSERT_TRUE(plain.has_value()) << seed;
    // A busy machine may cut a reading short, which is then taken again.
    std::string volleys;
    eventually([&] {
      volleys =
          dump(readMusic(player->pid(), *accessibility, StoppedClock(), musicPlayer, patient));
      return volleys == dump(plain);
    });
    EXPECT_EQ(volleys, dump(plain)) << seed;
    rowsSeen += plain->rows.size();
  }
  EXPECT_GT(rowsSeen, 300U);  // or the trees prove nothing
}

}  // namespace
}  // namespace vellora
