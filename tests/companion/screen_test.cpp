#include "companion/view/screen.h"

#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "companion/song/lrc.h"
#include "companion/view/plain_view.h"
#include "companion/view/terminal_view.h"
#include "companion/view/text_width.h"

namespace vellora::companion {
namespace {

TEST(TextWidth, CountsColumns) {
  EXPECT_EQ(textWidth("abc"), 3);
  EXPECT_EQ(textWidth("夜の道"), 6);
  EXPECT_EQ(textWidth("e\u0301"), 1);
  EXPECT_EQ(textWidth("ＡＢ"), 4);
  EXPECT_EQ(textWidth("한국"), 4);
  EXPECT_EQ(textWidth("a\u200Bb"), 2);
  EXPECT_EQ(textWidth(""), 0);
}

TEST(TextWidth, TextsAreFittedWithAnEllipsis) {
  EXPECT_EQ(fitted("abc", 3), "abc");
  EXPECT_EQ(fitted("abcd", 3), "ab…");
  EXPECT_EQ(fitted("夜の道", 6), "夜の道");
  EXPECT_EQ(fitted("夜の道", 5), "夜の…");
  EXPECT_EQ(fitted("夜の道", 4), "夜…");
  EXPECT_EQ(fitted("a", 0), "");
  EXPECT_EQ(fitted("ab", 1), "…");
}

struct Shown {
  explicit Shown(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i) {
      text += "[00:" + std::string(i < 10 ? "0" : "") + std::to_string(i) + ".00]line " +
              std::to_string(i) + "\n";
    }
    song.song = assemble(readLrc("a.lrc", text), std::nullopt);
    state.track = NowPlayingTrack(1, "T", "A", "", 0, true);
    state.song = &song;
  }
  PlayingSong song;
  ViewState state;
};

TEST(SongText, CountsLines) {
  EXPECT_EQ(songText(Shown(1).state), "T — A: 1 line, 0 translated");
  EXPECT_EQ(songText(Shown(2).state), "T — A: 2 lines, 0 translated");
}

TEST(Screen, AReadingStandsBetweenTheLineAndItsTranslation) {
  Shown shown(2);
  shown.song.song.lines[0].reading = "reading";
  shown.song.song.lines[0].translation = "translation";
  const auto lines = screenOf(shown.state, 40, 20);
  const auto line = std::ranges::find(lines, "  line 0", &ScreenLine::text);
  ASSERT_LT(std::distance(line, lines.end()), 20);
  ASSERT_GT(std::distance(line, lines.end()), 3);
  EXPECT_EQ(line[1].text, "    reading");
  EXPECT_EQ(line[2].text, "    translation");
}

TEST(PlainView, SaysALinesReadingBeforeItsTranslation) {
  Shown shown(2);
  shown.song.song.lines[0].reading = "reading";
  shown.song.song.lines[0].translation = "translation";
  shown.state.line = 0;
  std::ostringstream said;
  PlainView(said).show(shown.state);
  EXPECT_NE(said.str().find("line 0 — reading — translation"), std::string::npos) << said.str();
}

TEST(SongText, SaysWhereTheLyricsComeFrom) {
  Shown shown(1);
  shown.song.source = "lrclib.net";
  EXPECT_EQ(songText(shown.state), "T — A: 1 line, 0 translated, from lrclib.net");
}

TEST(PlainViews, SayOnceWhatComesOfAskingElsewhere) {
  std::ostringstream out;
  PlainView view(out);
  ViewState state;
  for (const char* report : {"asked", "asked", "", "no\x1bnetwork"}) {
    state.elsewhere = report;
    view.show(state);
  }
  EXPECT_EQ(out.str(), "nothing plays that the overlay tells of\nasked\nno network\n");
}

TEST(Screen, SaysWhatComesOfAskingElsewhere) {
  Shown shown(3);
  const auto says = [&](const std::string& text) {
    return std::ranges::any_of(screenOf(shown.state, 80, 14),
                               [&](const ScreenLine& line) { return line.text == text; });
  };
  EXPECT_FALSE(says("no network"));
  shown.state.elsewhere = "no network";
  EXPECT_TRUE(says("no network"));
}

TEST(Screen, IsNeverLargerThanTheTerminal) {
  Shown shown(50);
  shown.state.notice = std::string(500, 'n');
  shown.state.elsewhere = std::string(500, 'e');
  for (int columns = 0; columns < 120; columns += 7) {
    for (int rows = 0; rows < 40; ++rows) {
      shown.state.line = static_cast<std::size_t>(rows);
      const auto lines = screenOf(shown.state, columns, rows);
      ASSERT_LE(lines.size(), static_cast<std::size_t>(rows));
      for (const ScreenLine& line : lines) ASSERT_LE(textWidth(line.text), columns);
    }
  }
}

TEST(Screen, KeepsTheSungLineInView) {
  Shown shown(50);
  for (std::size_t i = 0; i < 50; ++i) {
    shown.state.line = i;
    int strong = 0;
    for (const ScreenLine& line : screenOf(shown.state, 80, 14)) {
      if (line.text == "› line " + std::to_string(i)) ++strong;
    }
    ASSERT_EQ(strong, 1) << "line " << i;
  }
}

TEST(Screen, TheBarGrowsWithThePosition) {
  Shown shown(2);
  shown.song.song.length = 100;
  shown.state.position = 50;
  EXPECT_EQ(positionBar(shown.state, 22), "▶ 0:50 ━━━━━───── 1:40");
  shown.state.position = 1000;
  EXPECT_EQ(positionBar(shown.state, 23), "▶ 16:40 ━━━━━━━━━━ 1:40");
  EXPECT_EQ(positionBar(shown.state, 10), "▶ 16:40");
  EXPECT_EQ(positionBar(shown.state, 3), "▶ …");
  shown.state.track.reset();
  EXPECT_EQ(positionBar(shown.state, 40), "");
}

TEST(Screen, NamesEveryKeyInEightyColumns) {
  // The last column stays free.
  const auto lines = screenOf(Shown(3).state, 79, 24);
  EXPECT_TRUE(lines.back().text.ends_with("  q quit")) << lines.back().text;
}

TEST(Screen, SaysByHowMuchTheLyricsAreShifted) {
  Shown shown(3);
  const auto settings = [&] { return screenOf(shown.state, 80, 15)[12].text; };
  EXPECT_EQ(settings(), "captions on  size 26  offset +0");
  shown.state.shift = 500;
  EXPECT_EQ(settings(), "captions on  size 26  offset +0  lyrics 0.5 s later");
  shown.state.shift = -12'100;
  EXPECT_EQ(settings(), "captions on  size 26  offset +0  lyrics 12.1 s earlier");
  EXPECT_EQ(songText(shown.state), "T — A: 3 lines, 0 translated, 12.1 s earlier");
}

TEST(Screen, SaysWhoTellsWhatPlays) {
  Shown shown(3);
  const auto line = [&] { return screenOf(shown.state, 80, 15)[11].text; };
  EXPECT_EQ(line(), "overlay: no status yet");
  shown.state.player = "Any\x1bPlayer";
  EXPECT_EQ(line(), "Any Player itself tells what plays; no overlay runs");
  shown.state.overlay = "Waiting for Music";
  EXPECT_EQ(line(), "Any Player itself tells what plays; overlay: Waiting for Music");
}

TEST(Screen, SaysWhatItWaitsFor) {
  ViewState state;
  state.snapshot = "/x/Vellora/snapshot.json";
  const auto says = [&](const std::string& text) {
    return std::ranges::any_of(screenOf(state, 80, 14),
                               [&](const ScreenLine& line) { return line.text == text; });
  };
  EXPECT_TRUE(says("Waiting for the overlay. Start it with"));
  state.hearsPlayers = true;
  EXPECT_TRUE(says("Waiting for a player, or the overlay. Start that with"));
}

TEST(Screen, KeysMeanWhatTheirLineSays) {
  EXPECT_EQ(wishOf(' '), Wish::playPause);
  EXPECT_EQ(wishOf('n'), Wish::next);
  EXPECT_EQ(wishOf('p'), Wish::previous);
  EXPECT_EQ(wishOf('q'), Wish::quit);
  EXPECT_EQ(wishOf('c'), Wish::toggle);
  EXPECT_EQ(wishOf('['), Wish::lyricsEarlier);
  EXPECT_EQ(wishOf(']'), Wish::lyricsLater);
  EXPECT_EQ(wishOf('x'), std::nullopt);
}

}  // namespace
}  // namespace vellora::companion
