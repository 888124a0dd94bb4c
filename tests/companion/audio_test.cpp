#include "companion/lyrics/audio.h"

#include <cmath>
#include <fstream>

#include "companion/audio_files.h"
#include "companion/library/library.h"
#include "companion/lines_text.h"
#include "companion/lyrics/reading.h"
#include "companion/song/text.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

using TagLib::ID3v2::Tag;

TEST(AudioTags, NamesAndLengthAreRead) {
  const LyricFile file = readLyrics("a.mp3", mp3([](Tag& tag) {
                                      tag.setTitle(utf8("Große Fahrt"));
                                      tag.setArtist("River Band");
                                      tag.setAlbum("Roads");
                                      addText(tag, "TLEN", "201500");
                                    }),
                                    "");
  const std::map<std::string, std::string> expected{
      {"ti", "Große Fahrt"}, {"ar", "River Band"}, {"al", "Roads"}, {"length", "201"}};
  EXPECT_EQ(file.tags, expected);
  EXPECT_TRUE(file.lines.empty());
  EXPECT_TRUE(file.problems.empty()) << textOf(file.problems);
}

class Recordings : public SongFolder {
 protected:
  std::string lengthOf(const std::string& name, const std::string& bytes) const {
    put(name, bytes);
    return readRecordingTags(folder / name)["length"];
  }
};

TEST_F(Recordings, AreAsLongAsTheySoundWhereTheTagsSayNothing) {
  const auto none = [](const auto&) {};
  EXPECT_EQ(lengthOf("a.flac", flac(none, 61)), "61");
  EXPECT_EQ(lengthOf("a.ogg", ogg(none, 62)), "62");
  EXPECT_EQ(lengthOf("a.opus", opus(none, 63)), "63");
  EXPECT_EQ(lengthOf("a.m4a", m4a(none, 64)), "64");
  EXPECT_EQ(lengthOf("b.flac", flac(none)), "") << "not known";
  EXPECT_TRUE(readLyrics("a.flac", flac(none, 61), "").tags.empty()) << "only where it is wanted";
}

TEST_F(Recordings, ThatAreNoFilesHaveNoTags) {
  std::filesystem::create_directory(folder / "a.flac");
  EXPECT_TRUE(readRecordingTags(folder / "a.flac").empty());
  EXPECT_TRUE(readRecordingTags(folder / "b.flac").empty());
}

TEST(AudioTags, LyricsOfEachFormatAreRead) {
  const auto comment = [](const char* key, const char* text) {
    return [=](TagLib::Ogg::XiphComment& comments) { comments.addField(key, utf8(text)); };
  };
  const char* const lrc = "[ar:x]\n[00:01.00]a\n[00:02.50]ü";
  const auto mp4 = m4a([&](TagLib::MP4::Tag& tag) {
    tag.setItem("\251lyr", TagLib::StringList(utf8(lrc)));
    tag.setArtist("y");
  });
  EXPECT_EQ(textOf(readLyrics("a.M4A", mp4, "")), "100 a|250 ü");
  EXPECT_EQ(readLyrics("a.m4a", mp4, "").tags["ar"], "y") << "the file's own tags outweigh";
  EXPECT_EQ(textOf(readLyrics("a.flac", flac(comment("LYRICS", lrc)), "")), "100 a|250 ü");
  EXPECT_EQ(textOf(readLyrics("a.ogg", ogg(comment("SYNCEDLYRICS", lrc)), "")), "100 a|250 ü");
  EXPECT_EQ(textOf(readLyrics("a.opus", opus(comment("UNSYNCEDLYRICS", "a\nb")), "")), "a|b");
  EXPECT_EQ(textOf(readLyrics("a.mp3", mp3([&](Tag& tag) { addUslt(tag, "eng", lrc); }), "")),
            "100 a|250 ü");
}

TEST(AudioTags, TimedLyricsOutweighPlainOnes) {
  const auto comments = [](TagLib::Ogg::XiphComment& to) {
    to.addField("LYRICS", "a\nb");
    to.addField("UNSYNCEDLYRICS", "[00:01.00]a\n[00:02.00]b");
  };
  EXPECT_EQ(textOf(readLyrics("a.flac", flac(comments), "")), "100 a|200 b");
  const auto frames = [](Tag& tag) {
    addUslt(tag, "und", "a\nb");
    addSylt(tag, "eng", listOf({Timed(1000, "a"), Timed(2000, "b")}));
  };
  EXPECT_EQ(textOf(readLyrics("a.mp3", mp3(frames), "")), "100 a|200 b");
}

TEST(AudioTags, PiecesOfALineAreJoined) {
  const auto pieces = [](Tag& tag) {
    addSylt(tag, "eng",
            listOf({Timed(500, "one "), Timed(900, "two"), Timed(1500, "\nthree "),
                    Timed(1900, "four")}));
  };
  EXPECT_EQ(textOf(readLyrics("a.mp3", mp3(pieces), "")), "50 one two|150 three four");
}

TEST(AudioTags, TimesInFramesAreTold) {
  const LyricFile file =
      readLyrics("a.mp3", mp3([](Tag& tag) {
                   addSylt(tag, "eng", listOf({Timed(5, "a"), Timed(9, "b")}), false);
                 }),
                 "");
  EXPECT_EQ(textOf(file), "a|b");
  EXPECT_EQ(textOf(file.problems),
            "a.mp3: warning: the times of the synchronised lyrics count MPEG frames; the lines are "
            "taken without times; write them in milliseconds");
}

TEST(AudioTags, OfSeveralLanguagesOneTranslatesTheOther) {
  const auto three = [](Tag& tag) {
    addUslt(tag, "eng", "[00:01.00]a\n[00:02.00]b");
    addUslt(tag, "ger", "[00:01.00]A\n[00:02.00]B");
    addUslt(tag, "fra", "[00:01.00]x\n[00:02.00]y");
  };
  const std::string bytes = mp3(three);
  EXPECT_EQ(textOf(readLyrics("a.mp3", bytes, "")), "100 a=A|200 b=B");
  EXPECT_EQ(textOf(readLyrics("a.mp3", bytes, "de")), "100 a=A|200 b=B");
  EXPECT_EQ(textOf(readLyrics("a.mp3", bytes, "fr")), "100 a=x|200 b=y");
  EXPECT_EQ(textOf(readLyrics("a.mp3", bytes, "en")), "100 A=a|200 B=b");
  const std::string sung = mp3([&](Tag& tag) {
    three(tag);
    addText(tag, "TLAN", "fre");
  });
  EXPECT_EQ(textOf(readLyrics("a.mp3", sung, "de")), "100 x=A|200 y=B");
}

TEST(AudioTags, ADescriptionMaySayThatItIsATranslation) {
  const std::string bytes = mp3([](Tag& tag) {
    addUslt(tag, "und", "A\nB", "Translation");
    addUslt(tag, "und", "a\nb");
  });
  EXPECT_EQ(textOf(readLyrics("a.mp3", bytes, "")), "a=A|b=B");
}

TEST(AudioTags, TheSameTextTwiceIsNoTranslation) {
  const std::string bytes = mp3([](Tag& tag) {
    addUslt(tag, "eng", "a\nb");
    addUslt(tag, "deu", "a\nb");
  });
  EXPECT_EQ(textOf(readLyrics("a.mp3", bytes, "de")), "a|b");
}

class AudioFiles : public SongFolder {
 protected:
  // "file+translation: title by artist|…"
  std::string songs() {
    library.emplace(folder, "");
    library->refresh();
    std::string result;
    for (const LibrarySong& song : library->songs()) {
      if (!result.empty()) result += "|";
      result += song.files.lyrics.filename().string();
      if (!song.files.translation.empty()) {
        result += "+" + song.files.translation.filename().string();
      }
      result += ": " + song.names.title + " by " + song.names.artist;
    }
    return result;
  }
  static std::string named(const char* lyrics) {
    return mp3([&](Tag& tag) {
      tag.setTitle("Night Drive");
      tag.setArtist("River Band");
      tag.setAlbum("Roads");
      if (*lyrics != '\0') addUslt(tag, "eng", lyrics);
    });
  }

  std::optional<Library> library;
};

TEST_F(AudioFiles, GiveTheLyricsBesideThemTheirNames) {
  put("01.mp3", named(""));
  put("01.lrc", "[00:01.00]a");
  put("02.mp3", named(""));
  put("02.lrc", "[ti:Own]\n[00:01.00]a");
  EXPECT_EQ(songs(), "01.lrc: Night Drive by River Band|02.lrc: Own by ");
  EXPECT_EQ(library->songs()[0].album, "Roads");
}

TEST_F(AudioFiles, WithLyricsInThemAreSongs) {
  put("a.mp3", named("[00:01.00]a\n[00:02.00]b"));
  put("a.de.lrc", "[00:01.00]A\n[00:02.00]B");
  put("b.mp3", named(""));
  put("b.de.lrc", "[00:01.00]A");
  put("c.mp3", "no audio at all");
  EXPECT_EQ(songs(), "a.mp3+a.de.lrc: Night Drive by River Band|b.de.lrc: b.de by ");
  EXPECT_EQ(companion::textOf(library->load(library->songs()[0])), "100 a=A|200 b=B");
  EXPECT_TRUE(library->problems().empty());
}

TEST_F(AudioFiles, MakeATextBesideThemASong) {
  put("a.mp3", named(""));
  put("a.txt", "a\nb");
  EXPECT_EQ(songs(), "a.txt: Night Drive by River Band");
}

TEST_F(AudioFiles, ThatGetLyricsLaterBecomeSongs) {
  put("a.mp3", named(""));
  put("x/b.mp3", named("b"));
  EXPECT_EQ(songs(), "b.mp3: Night Drive by River Band");
  put("a.mp3", named("a"));
  library->refresh();
  EXPECT_EQ(library->songs().size(), 2U);
  std::filesystem::remove_all(folder / "x");
  put("a.mp3", named(""));
  library->refresh();
  EXPECT_TRUE(library->songs().empty());
}

TEST_F(AudioFiles, AreNotReadAgainWithoutAChange) {
  put("a.mp3", named(""));
  put("b.mp3", named("a"));
  songs();
  const std::size_t files = library->work().files;
  library->refresh();
  EXPECT_EQ(library->work().files, files);
}

TEST_F(AudioFiles, WithoutLyricsTellAlbumAndLength) {
  const auto song = [](const char* title, const char* artist, const char* album) {
    return [=](TagLib::Ogg::XiphComment& to) {
      to.setTitle(title);
      to.setArtist(artist);
      to.setAlbum(album);
    };
  };
  put("a.flac", flac(song("Night Drive", "River Band", "Roads"), 61));
  put("b.flac", flac(song("Night Drive", "River Band", "Live"), 62));
  put("c.flac", flac(song("Night Drive", "Another", "Roads"), 63));
  put("d.flac", flac(song("Other", "River Band", "Roads"), 64));
  put("River Band - Untagged.flac", flac([](const auto&) {}, 65));
  put("e.flac", flac(song("Sung", "River Band", "Roads"), 66));
  put("e.lrc", "[00:01.00]a");
  EXPECT_EQ(songs(), "e.lrc: Sung by River Band");
  const auto told = [&](const char* title, const char* artist, const char* album) {
    const auto found = library->recording(title, artist, album);
    return found ? found->album + " " + std::to_string(std::lround(found->length.value_or(0)))
                 : "none";
  };
  EXPECT_EQ(told("NIGHT DRIVE", "River Band", ""), "Roads 61");
  EXPECT_EQ(told("Night Drive - Remastered 2011", "river band", "live"), "Live 62");
  EXPECT_EQ(told("Night Drive", "Another", ""), "Roads 63");
  EXPECT_EQ(told("Night Drive", "Another", "Live"), "none") << "of another album";
  EXPECT_EQ(told("Night Drive", "Nobody", ""), "none");
  EXPECT_EQ(told("Night Drive", "", ""), "none") << "whoever that is";
  EXPECT_EQ(told("Untagged", "River Band", "Roads"), " 65");
  std::filesystem::remove(folder / "c.flac");
  library->refresh();
  EXPECT_EQ(told("Night Drive", "Another", ""), "none");
}

TEST_F(AudioFiles, OfOneTitleAreOpenedUpToABound) {
  const auto by = [](const std::string& artist) {
    return flac([=](TagLib::Ogg::XiphComment& to) {
      to.setTitle("Intro");
      to.setArtist(artist);
    });
  };
  for (int i = 10; i < 20; ++i) put(std::to_string(i) + ".flac", by(std::to_string(i)));
  songs();
  EXPECT_TRUE(library->recording("Intro", "17", ""));
  EXPECT_FALSE(library->recording("Intro", "18", "")) << "the ninth";
}

TEST_F(AudioFiles, ThatAreNoneAreToldOfLikeOthers) {
  std::filesystem::create_directory(folder / "a.mp3");
  put("b.mp3", "");
  put("c.flac", std::string(100'000, '\xFF'));
  EXPECT_EQ(songs(), "");
}

}  // namespace
}  // namespace vellora::companion
