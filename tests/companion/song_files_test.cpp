#include "companion/library/song_files.h"

#include "companion/library/library.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

class SongFilesInAFolder : public SongFolder {
 protected:
  void put(std::initializer_list<const char*> names) const {
    for (const char* name : names) SongFolder::put(name, "[00:01.00]a\n");
  }
  FoundFiles filesOf(const std::string& searched, const std::string& language = "") const {
    Library library(searched, language);
    library.refresh();
    FoundFiles files;
    for (const LibrarySong& song : library.songs()) files.songs.push_back(song.files);
    files.problems = library.problems();
    return files;
  }
  // "lyrics+translation|…" relative to the folder.
  std::string found(const std::string& language = "") {
    const FoundFiles files = filesOf(folder, language);
    problems = files.problems.size();
    std::string result;
    for (const SongFiles& song : files.songs) {
      if (!result.empty()) result += "|";
      result += song.lyrics.lexically_relative(folder).string();
      if (!song.translation.empty()) {
        result += "+" + song.translation.lexically_relative(folder).string();
      }
    }
    return result;
  }

  std::size_t problems = 0;
};

TEST_F(SongFilesInAFolder, ATranslationStandsBesideTheLyrics) {
  put({"a.lrc", "a.de.lrc", "b.lrc", "c.ttml", "c.translation.lrc", "d.srt", "d.pt-BR.srt"});
  EXPECT_EQ(found(), "a.lrc+a.de.lrc|b.lrc|c.ttml+c.translation.lrc|d.srt+d.pt-BR.srt");
}

TEST_F(SongFilesInAFolder, ATranslationWithoutLyricsIsASongOfThatName) {
  put({"a.de.lrc", "Mr. Big.lrc"});
  EXPECT_EQ(found(), "Mr. Big.lrc|a.de.lrc");
}

TEST_F(SongFilesInAFolder, TheWantedLanguageIsPreferredThenItsVariantThenTheFirst) {
  put({"a.lrc", "a.de.lrc", "a.en-GB.lrc", "a.fr.lrc"});
  EXPECT_EQ(found("fr"), "a.lrc+a.fr.lrc");
  EXPECT_EQ(found("en-US"), "a.lrc+a.en-GB.lrc");
  EXPECT_EQ(found("es"), "a.lrc+a.de.lrc");
  EXPECT_EQ(found(), "a.lrc+a.de.lrc");
}

TEST_F(SongFilesInAFolder, ALanguageMayBeCalledByItsName) {
  put({"a.lrc", "a.deutsch.lrc", "a.French.lrc", "b/lyrics.lrc", "b/translation.español.lrc"});
  EXPECT_EQ(found("de"), "a.lrc+a.deutsch.lrc|b/lyrics.lrc+b/translation.español.lrc");
  EXPECT_EQ(found("fr-CA"), "a.lrc+a.French.lrc|b/lyrics.lrc+b/translation.español.lrc");
}

TEST_F(SongFilesInAFolder, AnotherWordMakesASongOfItsOwnThatKnowsItsNamesake) {
  put({"a.lrc", "a.live.lrc", "a.live.de.lrc", "b. Big.lrc", "b.lrc", "c.live.lrc"});
  EXPECT_EQ(found(), "a.live.lrc+a.live.de.lrc|a.lrc|b. Big.lrc|b.lrc|c.live.lrc");
  const FoundFiles files = filesOf(folder);
  EXPECT_EQ(files.songs[0].namesake, folder / "a.lrc");
  for (std::size_t i = 1; i < files.songs.size(); ++i) {
    EXPECT_EQ(files.songs[i].namesake, "") << files.songs[i].lyrics;
  }
}

TEST_F(SongFilesInAFolder, ATextNamedAfterAnotherIsWarnedOf) {
  put({"a.txt", "a.live.txt"});
  EXPECT_EQ(found(), "");
  const FoundFiles files = filesOf(folder);
  std::string text;
  for (const Problem& problem : files.problems) text += problem.text() + "\n";
  EXPECT_NE(
      text.find("a.live.txt: warning: named after a.txt, but not as its translation, and left "
                "out; if it translates a.txt, name it a.LANGUAGE.txt, such as a.de.txt; if it "
                "is a song, add a.live.LANGUAGE.txt\n"),
      std::string::npos)
      << text;
}

TEST_F(SongFilesInAFolder, ATableOfTheSameNameTranslatesAndAloneIsASong) {
  put({"a.lrc", "a.po", "b.tsv", "c.lrc", "c.fr.tsv"});
  EXPECT_EQ(found(), "a.lrc+a.po|b.tsv|c.lrc+c.fr.tsv");
}

TEST_F(SongFilesInAFolder, AFolderMayHoldLyricsAndTranslationOfOneSong) {
  put({"01-song/lyrics.lrc", "01-song/translation.lrc", "02/lyrics.lrc", "02/translation.de.lrc"});
  EXPECT_EQ(found(),
            "01-song/lyrics.lrc+01-song/translation.lrc|02/lyrics.lrc+02/translation.de.lrc");
  const FoundFiles files = filesOf(folder);
  EXPECT_EQ(files.songs[0].stem, "01-song");
}

TEST_F(SongFilesInAFolder, ATextAloneIsNoSongAndIsNoted) {
  put({"readme.txt", "a.txt", "a.de.txt", "b.mp3"});
  EXPECT_EQ(found(), "a.txt+a.de.txt");
  EXPECT_EQ(problems, 1U);
}

TEST_F(SongFilesInAFolder, OfTwoFilesOfASongTheRicherIsTaken) {
  put({"a.lrc", "a.srt", "a.txt"});
  EXPECT_EQ(found(), "a.lrc");
}

TEST_F(SongFilesInAFolder, FoldersAreNamedFromTheInnermostOn) {
  put({"Artist/Album/03 - Title.lrc"});
  const FoundFiles files = filesOf(folder.string() + "/");
  ASSERT_EQ(files.songs.size(), 1U);
  EXPECT_EQ(files.songs[0].folders, (std::vector<std::string>{"Album", "Artist"}));
  EXPECT_EQ(files.songs[0].stem, "03 - Title");
}

TEST_F(SongFilesInAFolder, LinksAreNotFollowedInCircles) {
  put({"x/a.lrc"});
  std::filesystem::create_directory_symlink(folder, folder / "x/again");
  EXPECT_EQ(found(), "x/a.lrc");
}

TEST_F(SongFilesInAFolder, TheSearchEndsAtItsDepth) {
  put({"1/2/3/4/5/6/7/8/a.lrc", "1/2/3/4/5/6/7/8/9/b.lrc"});
  EXPECT_EQ(found(), "1/2/3/4/5/6/7/8/a.lrc");
}

TEST_F(SongFilesInAFolder, AFolderThatIsNoneIsTold) {
  const FoundFiles files = filesOf(folder / "nowhere");
  ASSERT_EQ(files.problems.size(), 1U);
  EXPECT_NE(files.problems[0].text().find("nowhere: error: cannot be opened"), std::string::npos);
}

}  // namespace
}  // namespace vellora::companion
