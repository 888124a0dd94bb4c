#include "companion/library/library.h"

#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

constexpr double now = 1'000'000;

class Libraries : public SongFolder {
 protected:
  // Every folder was changed last at that time, in seconds since 1970.
  void changedAt(double time) const { setTimes(static_cast<std::time_t>(time)); }
  static void lookThrough(Library& library, double at = now) {
    library.beginLook();
    while (library.looking()) library.look(at);
  }
  // The titles in the order of the files.
  static std::string titles(const Library& library) {
    std::string result;
    for (const LibrarySong& song : library.songs()) result += song.names.title + "|";
    return result;
  }
};

TEST_F(Libraries, WithoutAChangeNothingIsOpenedAgain) {
  put("a.lrc", "[ti:A]\n[00:01.00]a");
  put("x/b.lrc", "[ti:B]\n[00:01.00]a");
  put("x/b.de.lrc", "[00:01.00]a");
  put("x/y/c.lrc", "[ti:C]\n[00:01.00]a");
  changedAt(now - 100);
  Library library(folder, "");
  lookThrough(library);
  EXPECT_EQ(titles(library), "A|B|C|");
  EXPECT_EQ(library.work().folders, 3U);
  EXPECT_EQ(library.work().files, 3U);
  lookThrough(library, now + 10);
  EXPECT_EQ(titles(library), "A|B|C|");
  EXPECT_EQ(library.work().folders, 3U);
  EXPECT_EQ(library.work().files, 3U);
}

TEST_F(Libraries, OfAFolderThatChangedOnlyNewFilesAreOpened) {
  put("a.lrc", "[ti:A]\n[00:01.00]a");
  put("x/b.lrc", "[ti:B]\n[00:01.00]a");
  changedAt(now - 100);
  Library library(folder, "");
  lookThrough(library);
  put("x/c.lrc", "[ti:C]\n[00:01.00]a");
  std::filesystem::remove(folder / "a.lrc");
  changedAt(now - 50);
  lookThrough(library);
  EXPECT_EQ(titles(library), "B|C|");
  EXPECT_EQ(library.work().folders, 4U);
  EXPECT_EQ(library.work().files, 3U);
}

TEST_F(Libraries, AFolderThatChangedAMomentAgoIsReadAgain) {
  changedAt(now - 1);
  Library library(folder, "");
  lookThrough(library);
  put("a.lrc", "[ti:A]\n[00:01.00]a");
  changedAt(now - 1);  // in the same second
  lookThrough(library, now + 1);
  EXPECT_EQ(titles(library), "A|");
}

TEST_F(Libraries, AFileThatIsWrittenInPlaceIsReadAgain) {
  put("a.lrc", "[ti:A]\n[00:01.00]a");
  changedAt(now - 100);
  Library library(folder, "");
  lookThrough(library);
  put("a.lrc", "[ti:Another]\n[00:01.00]a");
  changedAt(now - 100);
  lookThrough(library);
  EXPECT_EQ(titles(library), "Another|");
}

TEST_F(Libraries, AFolderThatGoesTakesItsSongsAlong) {
  put("a.lrc", "[ti:A]\n[00:01.00]a");
  put("x/y/z/b.lrc", "[ti:B]\n[00:01.00]a");
  put("x/y/c.txt", "a");
  Library library(folder, "");
  lookThrough(library);
  EXPECT_EQ(library.problems().size(), 1U);
  std::filesystem::remove_all(folder / "x");
  lookThrough(library);
  EXPECT_EQ(titles(library), "A|");
  EXPECT_TRUE(library.problems().empty());
  std::filesystem::remove_all(folder);
  lookThrough(library);
  EXPECT_EQ(titles(library), "");
  EXPECT_EQ(library.problems().size(), 1U);
}

TEST_F(Libraries, APieceOfALookOpensFewFiles) {
  for (int i = 0; i < 200; ++i) put(std::to_string(i) + ".lrc", "[00:01.00]a");
  Library library(folder, "");
  EXPECT_TRUE(library.looking());
  EXPECT_TRUE(library.look(now));
  EXPECT_GT(library.work().files, 0U);
  EXPECT_LT(library.work().files, 50U);
  EXPECT_EQ(library.songs().size(), 200U);
  EXPECT_FALSE(library.complete());
  while (library.looking()) library.look(now);
  EXPECT_EQ(library.work().files, 200U);
  EXPECT_TRUE(library.complete());
}

TEST_F(Libraries, AnIdleLookGoesOnWhereItStopped) {
  for (int i = 1000; i < 2000; ++i) std::filesystem::create_directory(folder / std::to_string(i));
  changedAt(now - 100);
  Library library(folder, "");
  lookThrough(library);
  put("1999/a.lrc", "[ti:A]\n[00:01.00]a");
  EXPECT_FALSE(library.lookIdly(now)) << "a third of the folders";
  EXPECT_FALSE(library.looking());
  EXPECT_FALSE(library.lookIdly(now));
  EXPECT_TRUE(library.lookIdly(now));
  while (library.looking()) library.look(now);
  EXPECT_EQ(titles(library), "A|");
}

}  // namespace
}  // namespace vellora::companion
