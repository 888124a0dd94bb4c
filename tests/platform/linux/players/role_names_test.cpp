#include "platform/linux/players/role_names.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vellora {
namespace {

// Numbers of atspi-constants.h, names as atspi_role_get_name of at-spi2-core 2.46 printed them.
TEST(RoleNamesTest, NamesHaveTheirNumbers) {
  const std::pair<const char*, std::uint32_t> rows[] = {{"invalid", 0},
                                                        {"dialog", 16},
                                                        {"label", 29},
                                                        {"list", 31},
                                                        {"list item", 32},
                                                        {"panel", 39},
                                                        {"push button", 43},
                                                        {"scroll pane", 49},
                                                        {"table row", 90},
                                                        {"toggle button", 62},
                                                        {"viewport", 68},
                                                        {"paragraph", 73},
                                                        {"heading", 83},
                                                        {"section", 85},
                                                        {"link", 88},
                                                        {"document web", 95},
                                                        {"list box", 98},
                                                        {"grouping", 99},
                                                        {"article", 109},
                                                        {"landmark", 110},
                                                        {"static", 116},
                                                        {"mark", 127},
                                                        {"push button menu", 129},
                                                        {"switch", 130}};
  for (const auto& [name, number] : rows) {
    EXPECT_EQ(roleNumber(name), number) << name;
    EXPECT_EQ(roleName(number), name);
  }
}

TEST(RoleNamesTest, EachNumberHasANameOfItsOwn) {
  std::set<std::string> names;
  for (std::uint32_t number = 0; number <= 130; ++number) {
    EXPECT_EQ(roleNumber(roleName(number)), number);
    EXPECT_TRUE(names.insert(roleName(number)).second) << number;
  }
  EXPECT_EQ(roleName(131), "role 131");
  EXPECT_EQ(roleNumber("role 131"), std::nullopt);
}

TEST(RoleNamesTest, TheManualListsEach) {
  std::string manual = readText(VELLORA_MANUAL);
  std::ranges::replace(manual, '\n', ' ');
  ASSERT_FALSE(manual.empty());
  for (std::uint32_t number = 0; number <= 130; ++number) {
    const std::string name = roleName(number);
    EXPECT_TRUE(manual.find(' ' + name + ", ") != std::string::npos ||
                manual.find(' ' + name + ". ") != std::string::npos)
        << name;
  }
}

TEST(RoleNamesTest, OtherSpellingsOfProgramsAreTaken) {
  EXPECT_EQ(roleNumber("button"), roleNumber("push button"));
  EXPECT_EQ(roleNumber("statusbar"), roleNumber("status bar"));
  EXPECT_EQ(roleNumber("edit bar"), roleNumber("editbar"));
  EXPECT_EQ(roleNumber("tear off menu item"), roleNumber("tearoff menu item"));
  EXPECT_EQ(roleNumber("Push button"), std::nullopt);
  EXPECT_EQ(roleNumber(""), std::nullopt);
}

TEST(RoleNamesTest, GuessesWhatIsMeant) {
  EXPECT_EQ(likelyRoleName("region"), "landmark");
  EXPECT_EQ(likelyRoleName("div"), "section");
  EXPECT_EQ(likelyRoleName("listitem"), "list item");
  EXPECT_EQ(likelyRoleName("Push-Button"), "push button");
  EXPECT_EQ(likelyRoleName("pusch button"), "push button");
  EXPECT_EQ(likelyRoleName("landmrak"), "landmark");
  EXPECT_EQ(likelyRoleName("lsit"), "list");
  EXPECT_EQ(likelyRoleName("lyrics"), "");
  EXPECT_EQ(likelyRoleName(""), "");
  EXPECT_EQ(likelyRoleName(std::string(100'000, 'x')), "");
}

}  // namespace
}  // namespace vellora
