#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/players/player_descriptions.h"
#include "platform/player.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string described(const std::string& name) {
  return "[Player]\nName=" + name + "\n[Window]\nClass=C\n";
}

std::vector<std::string> namesOf(const DescriptionList& list) {
  std::vector<std::string> names;
  for (const auto& description : list.descriptions) {
    names.push_back(description->identifier + ": " + description->name);
  }
  return names;
}

class DescriptionFilesTest : public ::testing::Test {
 protected:
  DescriptionFilesTest() {
    fs::create_directory(own);
    fs::create_directory(shipped);
  }

  TemporaryFolder folder;
  const fs::path own = folder / "own";
  const fs::path shipped = folder / "shipped";
  const fs::path missing = folder / "missing";
};

TEST_F(DescriptionFilesTest, AreReadByNameFolderAfterFolderAndHideTheirNamesakes) {
  writeText(shipped / "b.player", described("shipped b"));
  writeText(shipped / "a.player", described("shipped a"));
  writeText(own / "b.player", described("own b"));
  writeText(own / "z.player", described("own z"));
  const auto list = readDescriptions({missing, own, shipped});
  EXPECT_THAT(namesOf(list), ElementsAre("b: own b", "z: own z", "a: shipped a"));
  EXPECT_THAT(list.problems, IsEmpty());

  const auto files = descriptionFiles({own, shipped});
  ASSERT_EQ(files.size(), 4U);
  EXPECT_EQ(files[2].path, shipped / "a.player");
  EXPECT_EQ(files[2].hiddenBy, "");
  EXPECT_EQ(files[3].path, shipped / "b.player");
  EXPECT_EQ(files[3].hiddenBy, own / "b.player");
}

TEST_F(DescriptionFilesTest, OnesWithProblemsAreLeftOutAndHideNevertheless) {
  writeText(own / "a.player", "[Player]\n");
  writeText(shipped / "a.player", described("a"));
  writeText(shipped / "c.player", described("c"));
  const auto list = readDescriptions({own, shipped});
  EXPECT_THAT(namesOf(list), ElementsAre("c: c"));
  ASSERT_EQ(list.problems.size(), 2U);
  EXPECT_EQ(list.problems[0].file, own / "a.player");
}

TEST_F(DescriptionFilesTest, OtherNamesAreNoDescriptions) {
  for (const char* name : {".a.player", "a.player~", "a.PLAYER", "player", ".player", "README"}) {
    writeText(own / name, "nonsense");
  }
  EXPECT_THAT(descriptionFiles({own}), IsEmpty());
}

TEST_F(DescriptionFilesTest, WhatIsNoOrdinaryFileIsToldAndNotWaitedFor) {
  fs::create_directory(own / "a.player");
  ASSERT_EQ(::mkfifo((own / "b.player").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", own / "c.player");
  fs::create_symlink("nowhere", own / "d.player");
  fs::create_symlink("e.player", own / "e.player");
  writeText(own / "f.player", std::string(17 * 1024 * 1024, '#'));
  writeText(shipped / "g", described("g"));
  fs::create_symlink(shipped / "g", own / "g.player");
  const auto list = readDescriptions({own});
  EXPECT_THAT(namesOf(list), ElementsAre("g: g"));
  std::vector<std::string> told;
  for (const auto& problem : list.problems) {
    EXPECT_EQ(problem.line, 0);
    told.push_back(fs::path(problem.file).filename().string() + ": " + problem.text + "; " +
                   problem.remedy);
  }
  EXPECT_THAT(told,
              ElementsAre("a.player: a folder, not a file; write the description as a text file",
                          "b.player: not an ordinary file; write the description as a text file",
                          "c.player: not an ordinary file; write the description as a text file",
                          "d.player: no such file; look at the name, or take the link away",
                          "e.player: cannot be read; look at its permissions and its size",
                          "f.player: cannot be read; look at its permissions and its size"));
}

TEST_F(DescriptionFilesTest, TheUsersFolderComesBeforeTheInstallations) {
  const auto program = fs::read_symlink("/proc/self/exe").parent_path();
  const fs::path installed = (program / "../share/vellora/players").lexically_normal();
  g_setenv("HOME", "/home/somebody", TRUE);
  g_setenv("XDG_DATA_HOME", "/data", TRUE);
  EXPECT_THAT(descriptionFolders(), ElementsAre("/data/vellora/players", installed));
  for (const char* unusable : {"", "relative"}) {
    g_setenv("XDG_DATA_HOME", unusable, TRUE);
    EXPECT_THAT(descriptionFolders(),
                ElementsAre("/home/somebody/.local/share/vellora/players", installed));
  }
  g_unsetenv("XDG_DATA_HOME");
  g_unsetenv("HOME");
  EXPECT_THAT(descriptionFolders(), ElementsAre(installed));
}

TEST(ShippedDescriptionsTest, AreReadWithoutAProblem) {
  const auto list = readDescriptions({VELLORA_SHIPPED_PLAYERS});
  for (const auto& problem : list.problems) {
    ADD_FAILURE() << problem.file << ':' << problem.line << ": " << problem.text;
  }
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(VELLORA_SHIPPED_PLAYERS)) {
    EXPECT_EQ(entry.path().extension(), ".player") << entry.path();
    ++files;
  }
  EXPECT_EQ(list.descriptions.size(), files);
  EXPECT_GE(files, 2U);
}

TEST(ShippedDescriptionsTest, HaveThePlayerThatIsReadAsItIs) {
  const auto list = readDescriptions({VELLORA_SHIPPED_PLAYERS});
  const auto music = std::ranges::find(list.descriptions, musicPlayer.identifier,
                                       [](const auto& one) { return one->identifier; });
  ASSERT_NE(music, list.descriptions.end());
  EXPECT_FALSE((*music)->lyrics);
  EXPECT_THAT((*music)->windowClasses, ElementsAre(musicPlayer.identifier));
}

TEST(ShippedDescriptionsTest, TakeALabelledRegionInEveryBrowser) {
  const auto list = readDescriptions({VELLORA_SHIPPED_PLAYERS});
  for (const char* browser : {"Chromium", "firefox-esr"}) {
    const auto candidates = descriptionsForPage(
        "https://example.org/",
        descriptionsFor({.classPart = browser, .applicationId = {}}, list.descriptions));
    const auto region = std::ranges::find(candidates, "labelled-region",
                                          [](const auto& one) { return one->identifier; });
    ASSERT_NE(region, candidates.end()) << browser;
    const ElementPattern& view = (*region)->lyrics->view;
    EXPECT_TRUE(fits(view, {.role = 110, .name = "Lyrics", .classes = {}, .id = {}}));
    EXPECT_FALSE(fits(view, {.role = 110, .name = "Comments", .classes = {}, .id = {}}));
  }
}

}  // namespace
}  // namespace vellora
