#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/players/player_descriptions.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string head = "[Player]\nName=A\n[Window]\nClass=B\n";
const std::string page = head + "[Lyrics]\nId=view\n";  // six lines

// Each problem as vellora-players tells it, without the file.
std::vector<std::string> problemsOf(const std::string& text) {
  std::vector<std::string> lines;
  const ReadDescription read = readDescription(text, "/folder/name.player");
  EXPECT_EQ(read.description == nullptr, !read.problems.empty());
  for (const auto& problem : read.problems) {
    EXPECT_EQ(problem.file, "/folder/name.player");
    lines.push_back(std::to_string(problem.line) + ": " + problem.text + "; " + problem.remedy);
  }
  return lines;
}

TEST(DescriptionReaderTest, BrowsersStandForTheWindowsOfAllOfThem) {
  const auto read =
      readDescription("[Player]\nName=A\n[Window]\nClass=@browsers;feishin\n", "a.player");
  ASSERT_TRUE(read.description);
  EXPECT_THAT(read.description->windowClasses, testing::Contains("Chromium"));
  EXPECT_THAT(read.description->windowClasses, testing::Contains("firefox-esr"));
  EXPECT_THAT(read.description->windowClasses, testing::Contains("chromium"));  // on Wayland
  EXPECT_EQ(read.description->windowClasses.back(), "feishin");
  EXPECT_THAT(problemsOf("[Player]\nName=A\n[Window]\nClass=@browser\n"),
              ElementsAre("4: \"@browser\" stands for no windows; write @browsers, or the windows' "
                          "own class"));
}

TEST(DescriptionReaderTest, ReadsAllThatADescriptionMaySay) {
  const auto read = readDescription(
      "# A remark\n"
      "[Player]\n"
      "Name = A player; of mine\n"
      "\n"
      "[Window]\r\n"
      "Class=Chromium;firefox-esr;\r\n"
      "Document=https://music.example.org/*;file://*/lyrics?.html\n"
      "[Container]\nRole=document web\nId=main-*\n"
      "[Lyrics]\nRole=landmark;section\nName=Lyrics;\\sAll the\\; words\\s\n"
      "[Viewport]\nClass=scroll*\n"
      "  [Row]  \n\tRole=button;list item\n Class=line;line-?\n"
      "[RowText]\nClass=text\n"
      "[RowFrame]\nRole=static\n"
      "[Title]\nId=title\n"
      "[Artist]\nClass=a\\\\b\n",
      "/folder/some.name.player");
  ASSERT_THAT(read.problems, IsEmpty());
  const PlayerDescription& described = *read.description;
  EXPECT_EQ(described.identifier, "some.name");
  EXPECT_EQ(described.file, "/folder/some.name.player");
  EXPECT_EQ(described.name, "A player; of mine");
  EXPECT_THAT(described.windowClasses, ElementsAre("Chromium", "firefox-esr"));
  EXPECT_THAT(described.documents,
              ElementsAre("https://music.example.org/*", "file://*/lyrics?.html"));
  EXPECT_TRUE(described.isPage());
  ASSERT_TRUE(described.lyrics);
  const LyricsPattern& lyrics = *described.lyrics;
  const auto pattern = [](std::vector<std::uint32_t> roles, std::vector<std::string> names,
                          std::vector<std::string> classes, std::vector<std::string> ids) {
    return ElementPattern{std::move(roles), std::move(names), std::move(classes), std::move(ids)};
  };
  EXPECT_EQ(lyrics.container, pattern({95}, {}, {}, {"main-*"}));
  EXPECT_EQ(lyrics.view, pattern({110, 85}, {"Lyrics", " All the; words "}, {}, {}));
  EXPECT_EQ(lyrics.viewport, pattern({}, {}, {"scroll*"}, {}));
  EXPECT_EQ(lyrics.row, pattern({43, 32}, {}, {"line", "line-?"}, {}));
  EXPECT_EQ(lyrics.rowText, pattern({}, {}, {"text"}, {}));
  EXPECT_EQ(lyrics.rowFrame, pattern({116}, {}, {}, {}));
  EXPECT_EQ(lyrics.title, pattern({}, {}, {}, {"title"}));
  EXPECT_EQ(lyrics.artist, pattern({}, {}, {"a\\b"}, {}));
}

TEST(DescriptionReaderTest, ARowsFrameMayBeThatOfItsText) {
  const auto isFrameOfText = [](const std::string& line) {
    return readDescription(page + "[Row]\nRole=link\n" + line, "x")
        .description->lyrics->isFrameOfText;
  };
  EXPECT_TRUE(isFrameOfText("Frame=text\n"));
  EXPECT_FALSE(isFrameOfText("Frame=element\n"));
  EXPECT_FALSE(isFrameOfText(""));

  EXPECT_THAT(
      problemsOf(page + "[Row]\nFrame=box\nRole=link\n[RowText]\nRole=link\nFrame=text\n"),
      ElementsAre("8: \"box\" is no frame of a row; write text for the box of its "
                  "characters, or element",
                  "12: unknown key \"Frame\" in [RowText]; its keys are Role, Name, Class and "
                  "Id"));
  EXPECT_THAT(
      problemsOf(page + "[Row]\nFrame=text\n"),
      ElementsAre("7: nothing in [Row], so that every element would fit; write Role=, Name=, "
                  "Class= or Id= below it"));
  EXPECT_THAT(
      problemsOf(page + "[Row]\nRole=link\nFrame=text\n[RowFrame]\nRole=link\n"),
      ElementsAre("10: [RowFrame] beside Frame=text in [Row]; take one of them out; Frame=text "
                  "takes the text that [RowText] names"));
}

TEST(DescriptionReaderTest, WithoutLyricsTheWindowIsReadAsItIs) {
  const auto read = readDescription(head, "x.player");
  ASSERT_THAT(read.problems, IsEmpty());
  EXPECT_FALSE(read.description->lyrics);
  EXPECT_FALSE(read.description->isPage());
}

TEST(DescriptionReaderTest, TellsUnknownGroupsAndKeysWithThoseThereAre) {
  EXPECT_THAT(
      problemsOf(page + "[Row]\nRole=link\nColour=red\nrole=link\n"),
      ElementsAre(
          "9: unknown key \"Colour\" in [Row]; its keys are Role, Name, Class, Id and Frame",
          "10: unknown key \"role\" in [Row]; what is meant may be Role; its keys "
          "are Role, Name, Class, Id and Frame"));
  EXPECT_THAT(problemsOf("[Player]\nName=A\nName[de]=B\n[Window]\nClass=B\nDokument=*\n"),
              ElementsAre("3: unknown key \"Name[de]\" in [Player]; its key is Name",
                          "6: unknown key \"Dokument\" in [Window]; what is meant may be Document; "
                          "its keys are Class and Document"));
  EXPECT_THAT(
      problemsOf(page + "[Row]\nRole=link\n[Row text]\nRole=link\n[Titel]\nId=a\n[Footer]\n"),
      ElementsAre("9: unknown group [Row text]; what is meant may be RowText; the groups are "
                  "Player, Window, Container, Lyrics, Viewport, Row, RowText, RowFrame, "
                  "Title and Artist",
                  "11: unknown group [Titel]; what is meant may be Title; the groups are "
                  "Player, Window, Container, Lyrics, Viewport, Row, RowText, RowFrame, "
                  "Title and Artist",
                  "13: unknown group [Footer]; the groups are Player, Window, Container, "
                  "Lyrics, Viewport, Row, RowText, RowFrame, Title and Artist"));
}

TEST(DescriptionReaderTest, TellsWhatIsMissing) {
  EXPECT_THAT(
      problemsOf(""),
      ElementsAre(
          "0: no [Player]; write [Player] and below it Name= with the player's name",
          "0: no [Window]; write [Window] and below it Class= with the class of the player's "
          "window"));
  EXPECT_THAT(
      problemsOf("[Window]\n[Player]\n"),
      ElementsAre(
          "1: no Class in [Window]; write [Window] and below it Class= with the class of the "
          "player's window",
          "2: no Name in [Player]; write [Player] and below it Name= with the player's name"));
  EXPECT_THAT(problemsOf(page), ElementsAre("5: no [Row] beside [Lyrics]; say what a row is"));
  EXPECT_THAT(problemsOf(head + "[Row]\nRole=link\n[Viewport]\nId=a\n"),
              ElementsAre("5: no [Lyrics] beside [Row]; say which element holds the rows",
                          "7: no [Lyrics] beside [Viewport]; say which element holds the rows"));
  EXPECT_THAT(problemsOf(head + "Document=*\n"),
              ElementsAre("3: no [Lyrics] for a page; say which element holds the rows, or take "
                          "Document= out"));
  EXPECT_THAT(problemsOf(page + "[Row]\nRole=link\n[Artist]\nId=a\n"),
              ElementsAre("9: no [Title] beside [Artist]; say which element has the title, or take "
                          "[Artist] out"));
}

TEST(DescriptionReaderTest, TellsPatternsThatFitEverything) {
  EXPECT_THAT(
      problemsOf(head + "[Lyrics]\n[Row]\n[Title]\n"),
      ElementsAre("5: nothing in [Lyrics], so that every element would fit; write Role=, "
                  "Name=, Class= or Id= below it",
                  "6: nothing in [Row], so that every element would fit; write Role=, Name=, "
                  "Class= or Id= below it",
                  "7: nothing in [Title], so that every element would fit; take the group "
                  "out"));
  EXPECT_THAT(problemsOf(page + "[Row]\nClass=*\nId=line;**\n"),
              ElementsAre("8: \"*\" fits every element; leave the key out, or write more than *",
                          "9: \"**\" fits every element; leave the key out, or write more than *"));
}

TEST(DescriptionReaderTest, TellsValuesThatCannotBeMeant) {
  EXPECT_THAT(
      problemsOf(page + "[Row]\nRole=region;lyric line;Push-button\nClass=.line;a\\sb\nId=#line\n"),
      ElementsAre("8: \"region\" is no role of AT-SPI; what is meant may be \"landmark\"",
                  "8: \"lyric line\" is no role of AT-SPI; vellora-player(5) lists them",
                  "8: \"Push-button\" is no role of AT-SPI; what is meant may be \"push button\"",
                  "9: \".line\" begins as a selector of CSS does; write \"line\" alone",
                  "9: \"a b\" fits no class: none has a blank; write ; between several",
                  "10: \"#line\" begins as a selector of CSS does; write \"line\" alone"));
  EXPECT_THAT(
      problemsOf("[Player]\nName=\\s\n[Window]\nClass=Fire*\n"
                 "Document=music.example.org;https://example.org;https://a b/\n[Lyrics]\nName=\\t\n"
                 "[Row]\nId=a\n"),
      ElementsAre(
          "2: a text of blanks alone; write what the text is",
          "4: \"Fire*\" has a wildcard, and a window's class is compared as it is; list the "
          "classes with ; between them",
          "5: \"music.example.org\" fits no address: it has no scheme; write "
          "\"https://music.example.org\"",
          "5: \"https://example.org\" fits no address: a path follows the host; write "
          "\"https://example.org/*\"",
          "5: \"https://a b/\" fits no address: none has a blank; write %20, or ; between "
          "several",
          "7: a text of blanks alone; write what the text is"));
  EXPECT_THAT(problemsOf(page + "[Row]\nRole=link\n[Title]\nName=\n"),
              ElementsAre("10: nothing after Name=; write a value, or take the line out"));
}

TEST(DescriptionReaderTest, TellsListsThatAreNotAsTheySeem) {
  EXPECT_THAT(
      problemsOf(page + "[Row]\nRole=link; section;;label \nName=a\\qb\nId=a\\\n"),
      ElementsAre("8: a blank before or after \" section\" in Role; take it out; one that "
                  "belongs there is written \\s",
                  "8: an empty value in the list Role; take the second ; out",
                  "8: a blank before or after \"label \" in Role; take it out; one that "
                  "belongs there is written \\s",
                  "9: an unknown escape in \"a\\qb\"; write \\\\ for a backslash and \\; for "
                  "a semicolon",
                  "10: an unknown escape in \"a\\\"; write \\\\ for a backslash and \\; for a "
                  "semicolon"));
}

TEST(DescriptionReaderTest, TellsWhatIsThereTwice) {
  EXPECT_THAT(
      problemsOf(page + "Id=b\n[Row]\nRole=link\n[Row]\nName=a\n"),
      ElementsAre("7: a second \"Id\" in [Lyrics]; keep one, with ; between its values; the "
                  "first is in line 6",
                  "10: a second [Row]; write its keys below the first, in line 8"));
}

TEST(DescriptionReaderTest, TellsLinesThatAreNoKeyFiles) {
  EXPECT_THAT(
      problemsOf("Name=A\n" + page +
                 "[Row\nRole\n=link\n[Row]]\n[]\n[Row]x\n\x1b[2J\n[Row]\nId=a\n"),
      ElementsAre(
          "1: a key before the first group; write [Player] above it",
          "8: a group's line that is not as [Row]; write its name between [ and ] alone",
          "9: neither a group [NAME] nor a line KEY=VALUE; begin a remark with #, and write a "
          "list in one line",
          "10: neither a group [NAME] nor a line KEY=VALUE; begin a remark with #, and write "
          "a list in one line",
          "11: a group's line that is not as [Row]; write its name between [ and ] alone",
          "12: a group's line that is not as [Row]; write its name between [ and ] alone",
          "13: a group's line that is not as [Row]; write its name between [ and ] alone",
          "14: a control character in the line; take it out"));
}

TEST(DescriptionReaderTest, TellsTextsThatAreNone) {
  EXPECT_THAT(problemsOf(page + "[Row]\nName=\xff\n"),
              ElementsAre("8: bytes that are not UTF-8; save the file as plain text in UTF-8"));
  EXPECT_THAT(problemsOf(page + std::string("[Row]\nName=\0\n", 13)),
              ElementsAre("8: a zero byte; save the file as plain text in UTF-8"));
  EXPECT_THAT(
      problemsOf("\xEF\xBB\xBF" + head),
      ElementsAre("1: a byte order mark at the beginning; save the file as UTF-8 without it"));
  const std::string largest = head + '#' + std::string(64 * 1024 - head.size() - 1, 'x');
  EXPECT_THAT(problemsOf(largest), IsEmpty());
  EXPECT_THAT(problemsOf(largest + 'x'),
              ElementsAre("0: more than 64 KiB; a description is a few lines; is this the right "
                          "file?"));
}

TEST(DescriptionReaderTest, WhatIsToldCannotSteerATerminal) {
  const std::string steering = "\\n\u009b2J";
  for (const std::string& text :
       {page + "[Row]\nRole=" + steering + "\nClass=." + steering + "\n",
        page + "[Row\u009b]\nRol\u009be=a\n", page + "[Row]\n\u009bx=1\n\u009bx=1\n"}) {
    const auto problems = problemsOf(text);
    EXPECT_GE(problems.size(), 1U);
    for (const std::string& problem : problems) {
      EXPECT_EQ(problem.find("\u009b"), std::string::npos) << problem;
      EXPECT_EQ(problem.find('\n'), std::string::npos) << problem;
    }
  }
}

}  // namespace
}  // namespace vellora
