#include "companion/library/song_names.h"

#include <gtest/gtest.h>

namespace vellora::companion {
namespace {

struct NameCase {
  const char* stem;
  std::vector<std::string> folders;
  std::map<std::string, std::string> tags;
  const char* title;
  const char* artist;
  int likeness;
};

class Names : public testing::TestWithParam<NameCase> {};

TEST_P(Names, AreComparedAsTheOverlayDoes) {
  const NameCase& given = GetParam();
  LyricFile file;
  file.tags = given.tags;
  const SongNames names = namesOf({"", "", given.stem, given.folders}, file);
  EXPECT_EQ(likeness(names, keysOf(given.title, given.artist)), given.likeness)
      << given.stem << " / " << given.title << " / " << given.artist;
}

using Tags = std::map<std::string, std::string>;

INSTANTIATE_TEST_SUITE_P(
    Tagged, Names,
    testing::Values(NameCase{"x",
                             {},
                             Tags{{"ti", "Night Drive"}, {"ar", "River Band"}},
                             "NIGHT DRIVE!",
                             "river  band",
                             6},
                    NameCase{"x", {}, Tags{{"ti", "我愛你"}, {"ar", "B"}}, "我爱你", "B", 6},
                    NameCase{"x", {}, Tags{{"ti", "Café"}, {"ar", "B"}}, "CAFE", "B", 6},
                    NameCase{"x", {}, Tags{{"ti", "A"}, {"ar", "B feat. C"}}, "A", "B", 5},
                    NameCase{"x", {}, Tags{{"ti", "A"}}, "A", "B", 3},
                    NameCase{"x", {}, Tags{{"ti", "A"}, {"ar", "C"}}, "A", "B", 0},
                    NameCase{"B - A", {}, Tags{{"ti", "C"}, {"ar", "B"}}, "A", "B", 0},
                    NameCase{"x", {}, Tags{{"ti", "♪"}, {"ar", "B"}}, "♪", "B", 0}));

INSTANTIATE_TEST_SUITE_P(
    ByFile, Names,
    testing::Values(
        NameCase{"River Band - Night Drive", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"Night Drive - River Band", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"03 - River Band - Night Drive", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"03. Night Drive", {"Album", "River Band"}, {}, "Night Drive", "River Band", 4},
        NameCase{"Night Drive", {"River Band"}, {}, "Night Drive", "River Band", 4},
        NameCase{"night_drive", {}, {}, "Night Drive", "River Band", 1},
        NameCase{"Night Drive", {"Somewhere"}, {}, "Night Drive", "River Band", 0},
        NameCase{"03 - Honey", {"Hive", "Queen Bee"}, {}, "Honey", "Moby", 0},
        NameCase{"03 - Honey", {"Hive", "Queen Bee"}, {}, "Honey", "Queen Bee", 4},
        NameCase{"7 Years", {}, {}, "7 Years", "Lukas Graham", 1},
        NameCase{"7 Years", {"Lukas Graham"}, {}, "7 Years", "Lukas Graham", 4},
        NameCase{"21 Guns", {"Green Day"}, {}, "21 Guns", "Green Day", 4},
        NameCase{"99 Luftballons", {"Nena"}, {}, "99 Luftballons", "Nena", 4},
        NameCase{"04 99 Luftballons", {"Nena"}, {}, "99 Luftballons", "Nena", 4},
        NameCase{"50 Cent - In Da Club", {}, {}, "In Da Club", "50 Cent", 4},
        NameCase{"1-02 Night Drive", {"River Band"}, {}, "Night Drive", "River Band", 4},
        NameCase{"1-02 - River Band - Night Drive", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"River Band – Night Drive", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"03 – River Band – Night Drive", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"River Band — Night Drive", {}, {}, "Night Drive", "River Band", 4},
        NameCase{"A - B - C", {}, {}, "B - C", "A", 4},
        NameCase{"Other Band - Night Drive", {}, {}, "Night Drive", "River Band", 0},
        NameCase{"99", {}, {}, "99", "X", 1}, NameCase{"Night", {}, {}, "Night Drive", "X", 0}));

TEST(NamesOfFiles, SayWhatPeopleSee) {
  const auto shown = [](const char* stem) {
    const SongNames names = namesOf({"", "", stem, {}}, LyricFile());
    return names.artist + "|" + names.title;
  };
  EXPECT_EQ(shown("7 Years"), "|7 Years");
  EXPECT_EQ(shown("03 Years"), "|Years");
  EXPECT_EQ(shown("12. Years"), "|Years");
  EXPECT_EQ(shown("1-02 Years"), "|Years");
  EXPECT_EQ(shown("50 Cent - In Da Club"), "50 Cent|In Da Club");
  EXPECT_EQ(shown("03 – River Band – Night Drive"), "River Band|Night Drive");
}

TEST(PlainTitles, AreWithoutWhatPlayersAdd) {
  EXPECT_EQ(plainTitle("Night Drive – Remastered 2011"), "Night Drive");
  EXPECT_EQ(plainTitle("Night Drive (Remastered 2011)"), "Night Drive");
  EXPECT_EQ(plainTitle("Night Drive - Remastered 2011"), "Night Drive");
  EXPECT_EQ(plainTitle("Night Drive [feat. A] (Live)"), "Night Drive");
  EXPECT_EQ(plainTitle("夜（現場）"), "夜");
  EXPECT_EQ(plainTitle("Night - Drive"), "Night - Drive");
  EXPECT_EQ(plainTitle("(What)"), "(What)");
  EXPECT_EQ(plainTitle("Night Drive"), "Night Drive");
}

}  // namespace
}  // namespace vellora::companion
