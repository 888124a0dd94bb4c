#include "companion/library/lyric_shift.h"

#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

class LyricShifts : public SongFolder {
 protected:
  std::filesystem::path file() const { return folder / "state" / "lyric-shifts"; }
  // As a companion that is started later finds it.
  int kept(const std::string& title, const std::string& artist) const {
    LyricShift shift(file());
    shift.play(title, artist);
    return shift.milliseconds();
  }
};

TEST_F(LyricShifts, AreKeptForEachSong) {
  LyricShift shift(file());
  shift.play("Night Drive", "River Band");
  EXPECT_EQ(shift.milliseconds(), 0);
  shift.change(300);
  shift.change(-100);
  EXPECT_TRUE(shift.changed());
  EXPECT_FALSE(std::filesystem::exists(file()));
  EXPECT_TRUE(shift.keep());
  EXPECT_FALSE(shift.changed());
  shift.play("Other", "River Band");
  EXPECT_EQ(shift.milliseconds(), 0);
  shift.change(-1500);
  shift.play("", "");
  EXPECT_EQ(kept("Other", "River Band"), -1500) << "kept when the song ends";
  EXPECT_EQ(kept("NIGHT DRIVE", "River-Band"), 200) << "by another spelling";
  EXPECT_EQ(kept("Night Drive", "Other Band"), 0);
  EXPECT_EQ(std::filesystem::status(file().parent_path()).permissions(),
            std::filesystem::perms::owner_all);
}

TEST_F(LyricShifts, OfASongThatIsBackInPlaceGo) {
  LyricShift shift(file());
  shift.play("A", "B");
  shift.change(100);
  ASSERT_TRUE(shift.keep());
  shift.change(-100);
  ASSERT_TRUE(shift.keep());
  EXPECT_EQ(textOf("state/lyric-shifts"), "vellora lyric shifts 1\nend\n");
}

TEST_F(LyricShifts, AreBounded) {
  LyricShift shift(file());
  shift.change(100);
  EXPECT_EQ(shift.milliseconds(), 0) << "no song plays";
  shift.play("A", "B");
  shift.change(1'000'000);
  EXPECT_EQ(shift.milliseconds(), 60'000);
  shift.change(-1'000'000);
  EXPECT_EQ(shift.milliseconds(), -60'000);
}

TEST_F(LyricShifts, ThatWereChangedLongestAgoMakeRoom) {
  LyricShift shift(file(), 3);
  for (const char* title : {"A", "B", "C", "A", "D"}) {
    shift.play(title, "");
    shift.change(100);
    ASSERT_TRUE(shift.keep());
  }
  EXPECT_EQ(kept("A", ""), 200);
  EXPECT_EQ(kept("B", ""), 0);
  EXPECT_EQ(kept("C", ""), 100);
  EXPECT_EQ(kept("D", ""), 100);
}

TEST_F(LyricShifts, OfTwoCompanionsAreKeptTogether) {
  LyricShift one(file());
  LyricShift two(file());
  one.play("A", "");
  two.play("B", "");
  one.change(100);
  two.change(200);
  ASSERT_TRUE(one.keep());
  ASSERT_TRUE(two.keep());
  EXPECT_EQ(kept("A", ""), 100);
  EXPECT_EQ(kept("B", ""), 200);
}

TEST_F(LyricShifts, OfTitlesWithoutLettersAreToldApart) {
  LyricShift shift(file());
  shift.play("???", "Band");
  shift.change(100);
  ASSERT_TRUE(shift.keep());
  EXPECT_EQ(kept("???", "Band"), 100);
  EXPECT_EQ(kept("!!!", "Band"), 0);
}

TEST_F(LyricShifts, OfHostileNamesDoNotBreakTheFile) {
  LyricShift shift(file());
  const std::string title = "a\tb\nend\n" + std::string(100'000, 'x');
  shift.play(title, "c\td\n");
  shift.change(100);
  ASSERT_TRUE(shift.keep());
  EXPECT_LT(std::filesystem::file_size(file()), 2000U);
  EXPECT_EQ(kept(title, "c\td\n"), 100);
}

TEST_F(LyricShifts, OfADamagedFileCountAsNone) {
  const std::string whole = "vellora lyric shifts 1\n100\tA\tB\n-200\tC\t\nend\n";
  put("state/lyric-shifts", whole);
  ASSERT_EQ(kept("A", "B"), 100);
  ASSERT_EQ(kept("C", ""), -200);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    put("state/lyric-shifts", whole.substr(0, size));
    ASSERT_EQ(kept("A", "B"), 0) << size;
  }
  for (const char* lines : {"100 \tA\tB\n", "1e2\tA\tB\n", "\tA\tB\n", "60001\tA\tB\n",
                            "99999999999\tA\tB\n", "100\tA\tB\n100\n", "100\tA\tB\n100\t\tB\n"}) {
    put("state/lyric-shifts", "vellora lyric shifts 1\n" + std::string(lines) + "end\n");
    ASSERT_EQ(kept("A", "B"), 0) << lines;
  }
  LyricShift shift(file());
  shift.play("A", "B");
  shift.change(300);
  EXPECT_TRUE(shift.keep());
  EXPECT_EQ(kept("A", "B"), 300) << "it is written anew";
}

TEST_F(LyricShifts, HoldForTheSongWhereTheyCannotBeWritten) {
  put("state", "a file in the folder's place");
  LyricShift shift(file());
  shift.play("A", "B");
  shift.change(100);
  EXPECT_FALSE(shift.keep());
  EXPECT_TRUE(shift.changed());
  EXPECT_EQ(shift.milliseconds(), 100);
}

TEST_F(LyricShifts, AreNotKeptWithoutAFile) {
  LyricShift shift("");
  shift.play("A", "B");
  shift.change(100);
  EXPECT_TRUE(shift.keep());
  EXPECT_EQ(shift.milliseconds(), 100);
}

}  // namespace
}  // namespace vellora::companion
