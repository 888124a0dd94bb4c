#include "companion/library/importing.h"

#include <sstream>

#include "base/files.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

class Importing : public SongFolder {
 protected:
  void SetUp() override {
    SongFolder::SetUp();
    to = folder / "to";
    from = folder / "from";
    std::filesystem::create_directory(to);
    std::filesystem::create_directory(from);
  }
  std::string run(bool replace = false) {
    Library library(from, "");
    library.refresh();
    std::ostringstream out;
    summary = importSongs(library, to, replace, {}, out);
    return withoutFolder(out.str());
  }
  std::string read(const char* name) const {
    return readWholeFile(to / name).value_or("(not there)");
  }

  std::filesystem::path from;
  std::filesystem::path to;
  ImportSummary summary;
};

TEST_F(Importing, ATimedSongBecomesAPairOfLrcFiles) {
  put("from/x.lrc", "[ti:T]\n[ar:A]\n[offset:500]\n[00:03.50][00:01.50]a\n[00:02.50]b\n");
  put("from/x.de.lrc", "[00:01.00]y\n[00:02.00]z\n");
  run();
  EXPECT_EQ(read("A - T.lrc"), "[ti:T]\n[ar:A]\n[00:01.00]a\n[00:02.00]b\n[00:03.00]a\n");
  EXPECT_EQ(read("A - T.de.lrc"), "[00:01.00]y\n[00:02.00]z\n");
  EXPECT_EQ(summary.written, 2U);
}

TEST_F(Importing, TwoSongsWithEqualTagsAreBothKept) {
  put("from/x.lrc", "[ti:T]\n[ar:A]\n[00:01.00]a\n");
  put("from/y.lrc", "[ti:t]\n[ar:a]\n[00:01.00]b\n");
  for (const bool replace : {false, true}) {
    run(replace);
    EXPECT_EQ(read("A - T.lrc"), "[ti:T]\n[ar:A]\n[00:01.00]a\n");
    EXPECT_EQ(read("a - t (2).lrc"), "[ti:t]\n[ar:a]\n[00:01.00]b\n");
  }
  run();
  EXPECT_EQ(summary.kept, 2U);
}

TEST_F(Importing, ALanguagesNameBecomesItsTag) {
  put("from/x.lrc", "[00:01.00]a\n");
  put("from/x.deutsch.lrc", "[00:01.00]y\n");
  run();
  EXPECT_EQ(read("x.de.lrc"), "[00:01.00]y\n");
}

TEST_F(Importing, ABilingualFileIsTakenApart) {
  put("from/x.lrc", "[00:01.00]a\n[00:01.00]b\n");
  run();
  EXPECT_EQ(read("x.lrc"), "[ti:x]\n[00:01.00]a\n");
  EXPECT_EQ(read("x.translation.lrc"), "[00:01.00]b\n");
}

TEST_F(Importing, ASongWithoutTimesBecomesATable) {
  put("from/x.txt", "a\nb\n");
  put("from/x.de.txt", "y\nz\n");
  run();
  EXPECT_EQ(read("x.tsv"), "a\ty\nb\tz\n");
}

TEST_F(Importing, TheLastLineSumsUp) {
  put("from/x.lrc", "[00:01.00]a\n");
  put("from/x.de.lrc", "[00:01.00]y\n");
  EXPECT_TRUE(run().ends_with("\n1 song read, 2 files written, 0 songs left as before\n"));
  EXPECT_TRUE(run().ends_with("\n1 song read, 0 files written, 1 song left as before\n"));
}

TEST_F(Importing, OtherEncodingsBecomeUtf8) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : std::u16string_view(u"[00:01.00]你")) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  put("from/x.lrc", bytes);
  run();
  EXPECT_EQ(read("x.lrc"), "[ti:x]\n[00:01.00]你\n");
}

TEST_F(Importing, WhatIsThereStaysUnlessItIsToBeReplaced) {
  put("from/x.lrc", "[00:01.00]a\n");
  put("to/x.lrc", "mine");
  EXPECT_NE(run().find("to/x.lrc is there already and stays; --force replaces it"),
            std::string::npos);
  EXPECT_EQ(read("x.lrc"), "mine");
  EXPECT_EQ(summary.kept, 1U);
  run(true);
  EXPECT_EQ(read("x.lrc"), "[ti:x]\n[00:01.00]a\n");
}

TEST_F(Importing, NamesCannotLeaveTheFolder) {
  put("from/x.lrc", "[ti:../../T\x1b]\n[ar:/A]\n[00:01.00]a\n");
  run();
  EXPECT_EQ(read("_A - .._.._T.lrc").substr(0, 4), "[ti:");
  put("from/x.lrc", "[ti:..]\n[00:01.00]a\n");
  run();
  EXPECT_EQ(read("_...lrc").substr(0, 4), "[ti:");
}

TEST_F(Importing, AFolderThatCannotBeWrittenIsTold) {
  put("from/x.lrc", "[00:01.00]a\n");
  std::filesystem::remove(to);
  EXPECT_NE(run().find("to/x.lrc: error: cannot be written"), std::string::npos);
  EXPECT_TRUE(summary.failed);
}

// What is imported reads as what it was imported from.
TEST_F(Importing, TheDemonstrationsSongsSurviveARoundTrip) {
  from = VELLORA_SONGS;
  run();
  Library before(from, "");
  Library after(to, "");
  before.refresh();
  after.refresh();
  ASSERT_EQ(before.songs().size(), 8U);
  for (const LibrarySong& song : before.songs()) {
    const auto found = after.find(song.names.title, song.names.artist);
    ASSERT_TRUE(found) << song.label();
    EXPECT_EQ(before.load(song).overlayLines(), after.load(after.songs()[*found]).overlayLines());
  }
}

}  // namespace
}  // namespace vellora::companion
