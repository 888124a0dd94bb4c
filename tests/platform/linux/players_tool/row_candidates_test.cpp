#include "platform/linux/players_tool/row_candidates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/players_tool/element_list.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<RowCandidate> candidatesIn(const std::vector<ListedElement>& listed) {
  return rowCandidates(surveyOf(elementList(listed)));
}

// Each as "ROW LINES in VIEW LINES: COUNT", with blanks for line ends.
std::vector<std::string> told(const std::vector<RowCandidate>& candidates) {
  std::vector<std::string> lines;
  for (const RowCandidate& candidate : candidates) {
    std::string line = patternLines(candidate.row) + "in " + patternLines(candidate.view) + ": " +
                       std::to_string(candidate.members.size());
    std::ranges::replace(line, '\n', ' ');
    lines.push_back(line);
  }
  return lines;
}

TEST(RowCandidatesTest, RowsByClassInTheElementAroundThem) {
  EXPECT_THAT(told(candidatesIn({
                  {.depth = 1, .role = "landmark", .id = "app"},
                  {.depth = 2, .role = "section", .classes = "panel is-open"},
                  {.depth = 3, .role = "section", .text = "one", .classes = "line current"},
                  {.depth = 3, .role = "section", .text = "two", .classes = "line"},
                  {.depth = 3, .role = "section", .text = "three", .classes = "line"},
              })),
              ElementsAre("Class=line in Class=panel : 3"));
}

TEST(RowCandidatesTest, RowsWithoutAClassByTheirRole) {
  EXPECT_THAT(told(candidatesIn({
                  {.depth = 0, .role = "landmark", .name = "Lyrics"},
                  {.depth = 1, .role = "push button", .text = "one", .name = "one"},
                  {.depth = 1, .role = "push button", .text = "two", .name = "two"},
                  {.depth = 1, .role = "push button", .text = "three", .name = "three"},
              })),
              ElementsAre("Role=push button in Role=landmark Name=Lyrics : 3"));
}

TEST(RowCandidatesTest, WordsInRowsAndSetsOfSomeRowsAreLeftOut) {
  const auto word = [](const char* text, double top) {
    return ListedElement{.depth = 2,
                         .role = "static",
                         .text = text,
                         .classes = "word",
                         .id = {},
                         .name = {},
                         .top = top};
  };
  const auto row = [](const char* text, const char* classes, double top) {
    return ListedElement{.depth = 1,
                         .role = "section",
                         .text = text,
                         .classes = classes,
                         .id = {},
                         .name = {},
                         .top = top};
  };
  EXPECT_THAT(told(candidatesIn({
                  {.depth = 0, .role = "section", .id = "words"},
                  row("a b", "row past", 100),
                  word("a", 101),
                  word("b", 101),
                  row("c d", "row past", 150),
                  word("c", 151),
                  word("d", 151),
                  row("e f", "row past", 200),
                  word("e", 201),
                  word("f", 201),
                  row("g h", "row", 250),
                  word("g", 251),
                  word("h", 251),
              })),
              ElementsAre("Class=row in Id=words : 4"));
}

TEST(RowCandidatesTest, LinesInStanzasStayBesideThem) {
  std::vector<ListedElement> listed{{.depth = 0, .role = "section", .id = "song"}};
  for (const char* stanza : {"1", "2", "3"}) {
    listed.push_back({.depth = 1, .role = "section", .text = stanza, .classes = "stanza"});
    for (const char* line : {"a", "b"}) {
      listed.push_back(
          {.depth = 2, .role = "section", .text = std::string(stanza) + line, .classes = "line"});
    }
  }
  EXPECT_THAT(told(candidatesIn(listed)),
              ElementsAre("Class=line in Id=song : 6", "Class=stanza in Id=song : 3"));
}

TEST(RowCandidatesTest, WhatSpeaksOfLyricsComesFirst) {
  std::vector<ListedElement> listed{{.depth = 0, .role = "list", .id = "tracks"}};
  for (const char* text : {"a", "b", "c", "d", "e"}) {
    listed.push_back({.depth = 1, .role = "list item", .text = text, .classes = "track"});
  }
  listed.push_back({.depth = 0, .role = "section", .classes = "SongLyrics"});
  for (const char* text : {"f", "g", "h"}) {
    listed.push_back({.depth = 1, .role = "section", .text = text, .classes = "line"});
  }
  EXPECT_THAT(told(candidatesIn(listed)),
              ElementsAre("Class=line in Class=SongLyrics : 3", "Class=track in Id=tracks : 5"));
}

TEST(RowCandidatesTest, FewerThanThreeOrSideBySideOrAllAlikeOrNowhereAreNone) {
  std::vector<ListedElement> two, beside, same;
  for (const char* text : {"a", "b", "c"}) {
    if (*text != 'c') two.push_back({.depth = 0, .role = "link", .text = text});
    beside.push_back(
        {.depth = 0, .role = "link", .text = text, .classes = {}, .id = {}, .name = {}, .top = 7});
    same.push_back({.depth = 0, .role = "link", .text = "same"});
  }
  EXPECT_THAT(candidatesIn(two), IsEmpty());
  EXPECT_THAT(candidatesIn(beside), IsEmpty());
  EXPECT_THAT(candidatesIn(same), IsEmpty());
  auto nowhere = elementList({{.depth = 0, .role = "link", .text = "a"},
                              {.depth = 0, .role = "link", .text = "b"},
                              {.depth = 0, .role = "link", .text = "c"}});
  EXPECT_EQ(rowCandidates(surveyOf(nowhere)).size(), 1U);
  nowhere[2].frame.reset();
  EXPECT_THAT(rowCandidates(surveyOf(nowhere)), IsEmpty());
}

TEST(RowCandidatesTest, TheViewIsTheFirstThatItsPatternFits) {
  // An earlier element has the class of the nearest one around, so the next one around is taken.
  EXPECT_THAT(told(candidatesIn({
                  {.depth = 0, .role = "section", .text = "menu", .classes = "box"},
                  {.depth = 0, .role = "landmark", .id = "app"},
                  {.depth = 1, .role = "section", .classes = "box"},
                  {.depth = 2, .role = "link", .text = "a"},
                  {.depth = 2, .role = "link", .text = "b"},
                  {.depth = 2, .role = "link", .text = "c"},
              })),
              ElementsAre("Role=link in Id=app : 3"));
}

TEST(RowCandidatesTest, ADraftIsADescriptionWithoutProblems) {
  const auto candidates = candidatesIn({
      {.depth = 0, .role = "landmark", .classes = "x*\\;y", .id = {}, .name = " a;b\\c "},
      {.depth = 1, .role = "push button", .text = "a"},
      {.depth = 1, .role = "push button", .text = "b"},
      {.depth = 1, .role = "push button", .text = "c"},
  });
  ASSERT_EQ(candidates.size(), 1U);
  const WindowNames window{.classPart = "A;B", .applicationId = {}};
  for (const char* address : {"", "https://music.example.org/song?x=1", "file:///home/me/a/b.html",
                              "https://music.example.org"}) {
    const auto read = readDescription(draftDescription(candidates[0], window, address), "x.player");
    ASSERT_TRUE(read.description) << read.problems[0].text;
    EXPECT_THAT(read.description->windowClasses, ElementsAre("A;B"));
    EXPECT_THAT(read.description->lyrics->view.names, ElementsAre(" a;b\\c "));
    EXPECT_EQ(read.description->isPage(), *address != '\0');
    if (*address == '\0') continue;
    EXPECT_EQ(
        descriptionsForPage(address + std::string(*address == 'f' ? "" : "/"), {read.description})
            .size(),
        1U)
        << address;
  }
}

TEST(RowCandidatesTest, WhatCannotBeWrittenOrWouldSteerATerminalIsInNoPattern) {
  const auto candidates = candidatesIn({
      {.depth = 0, .role = "landmark", .classes = "\x1b[2J", .id = "\u009b", .name = "a\nb"},
      {.depth = 1, .role = "link", .text = "a", .classes = "\x1b[2J x\xff"},
      {.depth = 1, .role = "link", .text = "b", .classes = "\x1b[2J x\xff"},
      {.depth = 1, .role = "link", .text = "c", .classes = "\x1b[2J x\xff"},
  });
  EXPECT_THAT(told(candidates), ElementsAre("Role=link in Role=landmark : 3"));
  const std::string draft = draftDescription(
      candidates[0], {.classPart = "\x1b[2J\n", .applicationId = {}}, "https://\x1b/\n");
  EXPECT_EQ(draft.find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace vellora
