#include "platform/linux/players_tool/showing.h"

#include <memory>
#include <sstream>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/players_tool/element_list.h"

namespace vellora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

PlayerDescriptionPtr described(const char* identifier) {
  return std::make_shared<PlayerDescription>(PlayerDescription{.identifier = identifier,
                                                               .file = {},
                                                               .name = {},
                                                               .windowClasses = {},
                                                               .documents = {},
                                                               .lyrics = LyricsPattern()});
}

ExplainedCandidate candidate(const ListedElement& element, std::string whyNot = {}) {
  return {.element = elementList({element})[0], .whyNot = std::move(whyNot)};
}

class ShowingTest : public ::testing::Test {
 protected:
  ShowingTest() {
    window.names = {.classPart = "Chromium", .applicationId = {}};
    window.player.process = 4711;
    found.program = "Chromium";
    found.hasMediaPlayer = true;
    found.played = "Night Drive — River Band";
    found.page = "https://music.example.org/song";
  }

  // With what a description that is not this one lacks.
  void describe(const char* identifier, std::string whyNot) {
    window.player.descriptions.push_back(described(identifier));
    auto& view = found.views.emplace_back();
    view.description = window.player.descriptions.back();
    view.whyNot = std::move(whyNot);
  }

  std::string show() {
    std::ostringstream output;
    showWindow(window, found, output);
    return output.str();
  }

  FrontWindow window;
  WindowExplanation found;
};

TEST_F(ShowingTest, TellsWhichDescriptionCountsAndWhatItFindsRowByRow) {
  describe("other", "Its pages are others.");
  describe("mine", "");
  describe("late", "");
  ExplainedView& view = found.views[1];
  view.candidates = {candidate({.role = "section", .classes = "box"}, "no [Container] around it"),
                     candidate({.role = "landmark", .id = "l", .name = "Lyrics"})};
  view.viewport = Rect{10, 100, 400, 300};
  view.title = "Night Drive";
  view.rows = {candidate({.role = "link", .text = "First line", .top = 120}),
               candidate({.role = "link", .text = "Second line", .top = 164.4}),
               candidate({.role = "link", .classes = "credits"}, "it has no text")};
  view.rows[0].element.frame->height = 20.2;
  EXPECT_EQ(show(),
            "Window: class \"Chromium\", process 4711\n"
            "Program: \"Chromium\"\n"
            "Media player of the process: \"Night Drive — River Band\"\n"
            "Page: https://music.example.org/song\n"
            "\n"
            "mine: This one counts.\n"
            "late: Another one comes before it.\n"
            "1 other does not count.\n"
            "\n"
            "Lyrics: landmark \"Lyrics\", id \"l\"\n"
            "Seen of them: 10,100 400x300\n"
            "Title: \"Night Drive\"\n"
            "2 rows, with place and size in points and the room to the next one:\n"
            "    1  10,120 400x20  room 24  \"First line\"\n"
            "    2  10,164 400x20  \"Second line\"\n"
            "    not 1 element: it has no text\n"
            "        link, class \"credits\"\n");
  EXPECT_TRUE(hasRows(found));
}

TEST_F(ShowingTest, TellsOfRowsThatAreNowhereOnTheScreen) {
  describe("mine", "");
  ExplainedView& view = found.views[0];
  view.rows = {candidate({.role = "link", .text = "First line", .top = 120}),
               candidate({.role = "link", .text = "Second line"}),
               candidate({.role = "link", .text = "Third line"})};
  view.rows[1].element.frame->y = -2147483648.0;
  view.rows[2].element.frame.reset();
  EXPECT_THAT(show(), HasSubstr("    1  10,120 400x20  \"First line\"\n"
                                "    2  out of sight  \"Second line\"\n"
                                "    3  out of sight  \"Third line\"\n"));
}

TEST_F(ShowingTest, TellsOfEachThatDoesNotCountWhatItLooksAtAndWhyNot) {
  describe("mine", "No element fits [Lyrics].");
  found.views[0].candidates = {
      candidate({.role = "landmark", .name = "Lyrics"}, "it is in no such container")};
  found.elements = elementList({{.depth = 0, .role = "link"}});
  for (int i = 0; i < 5; ++i) {
    found.views[0].candidates.push_back(
        candidate({.role = "landmark", .name = "Comments"}, "its name is another"));
  }
  EXPECT_THAT(show(), HasSubstr("\nmine: No element fits [Lyrics].\n"
                                "    not 1 element: it is in no such container\n"
                                "        landmark \"Lyrics\"\n"
                                "    not 5 elements: its name is another\n"
                                "\n"));
  EXPECT_FALSE(hasRows(found));
}

TEST_F(ShowingTest, TellsWhatStandsInTheWay) {
  found = {};
  found.whyNot = "The program is not on the accessibility bus.";
  EXPECT_EQ(show(),
            "Window: class \"Chromium\", process 4711\n"
            "Media player of the process: none\n"
            "The program is not on the accessibility bus.\n"
            "\n"
            "No description names this window.\n");
  EXPECT_FALSE(hasRows(found));
}

TEST_F(ShowingTest, LeavesAWindowThatIsReadAsItIsToTheDiagnosis) {
  describe("mine", "It says nothing about the lyrics.");
  auto plain = std::make_shared<PlayerDescription>(*window.player.descriptions[0]);
  plain->lyrics.reset();
  window.player.descriptions[0] = plain;
  found.elements = elementList({{.depth = 0, .role = "link", .text = "One"}});
  const std::string text = show();
  EXPECT_THAT(text, HasSubstr("\nmine: It says nothing about the lyrics.\n"
                              "\nWhat is read in it, \"vellora --diagnose\" tells.\n"));
  EXPECT_THAT(text, Not(HasSubstr("could be rows")));
}

TEST_F(ShowingTest, TellsOfAViewWithoutRows) {
  describe("mine", "");
  found.views[0].candidates = {candidate({.role = "list", .name = "Lyrics"})};
  EXPECT_THAT(show(), HasSubstr("\nLyrics: list \"Lyrics\"\n"
                                "No rows: nothing in it fits [Row] and has a text.\n"));
  EXPECT_FALSE(hasRows(found));
}

TEST_F(ShowingTest, ShowsWhatCouldBeRowsAndADescriptionToBeginWith) {
  found.elements = elementList({
      {.depth = 0, .role = "section", .classes = "lyrics-panel"},
      {.depth = 1, .role = "section", .text = "One", .classes = "line current"},
      {.depth = 1, .role = "section", .text = "Two", .classes = "line"},
      {.depth = 1, .role = "section", .text = "Three", .classes = "line"},
      {.depth = 1, .role = "section", .text = "Four", .classes = "line"},
  });
  EXPECT_THAT(show(), HasSubstr("\nOf 5 elements these could be rows:\n"
                                "\n"
                                "  4 times section, class \"line current\"\n"
                                "      \"One\"\n"
                                "      \"Two\"\n"
                                "      \"Three\"\n"
                                "    in\n"
                                "      section, class \"lyrics-panel\"\n"
                                "      the page\n"
                                "\n"
                                "A description to begin with, for the first of them:\n"
                                "\n"
                                "[Player]\n"
                                "Name=music.example.org\n"
                                "\n"
                                "[Window]\n"
                                "Class=@browsers\n"
                                "Document=https://music.example.org/*\n"
                                "\n"
                                "[Lyrics]\n"
                                "Class=lyrics-panel\n"
                                "\n"
                                "[Row]\n"
                                "Class=line\n"));
  found.elements.resize(3);
  EXPECT_THAT(show(),
              HasSubstr("\nOf 3 elements no three are alike and one below the other, as rows "
                        "are.\n"));
}

TEST_F(ShowingTest, MakesNoDraftWhereRowsAreFound) {
  describe("mine", "");
  found.elements = elementList({{.depth = 0, .role = "section", .id = "words"},
                                {.depth = 1, .role = "link", .text = "One"},
                                {.depth = 1, .role = "link", .text = "Two"},
                                {.depth = 1, .role = "link", .text = "Three"}});
  EXPECT_THAT(show(), HasSubstr("[Player]"));
  found.views[0].rows = {candidate({.role = "link", .text = "First line"})};
  const std::string text = show();
  EXPECT_THAT(text, HasSubstr("these could be rows"));
  EXPECT_THAT(text, Not(HasSubstr("[Player]")));
}

TEST_F(ShowingTest, WhatIsToldCannotSteerATerminal) {
  const std::string steering = "\x1b[2J\n\u009b\xff";
  window.names = {.classPart = steering, .applicationId = steering};
  found.program = found.played = found.page = steering;
  describe(steering.c_str(), "");
  const ListedElement bad{.depth = 0,
                          .role = "link",
                          .text = steering,
                          .classes = steering,
                          .id = steering,
                          .name = steering};
  found.views[0].candidates = found.views[0].rows = {candidate(bad), candidate(bad, "so")};
  found.views[0].title = steering;
  found.elements = elementList({bad, bad, bad});
  for (int i = 0; i < 3; ++i) found.elements[static_cast<std::size_t>(i)].text += std::to_string(i);
  const std::string text = show();
  EXPECT_THAT(text, HasSubstr("these could be rows"));
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  EXPECT_EQ(text.find("\u009b"), std::string::npos);
  EXPECT_EQ(text.find('\xff'), std::string::npos);
}

}  // namespace
}  // namespace vellora
