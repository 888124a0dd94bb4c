#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// An element as a description's author has to know it. Frames are in points from the top left of
// the screen; nothing: the element has none.
struct ExplainedElement {
  std::uint32_t role = 0;  // AtspiRole
  std::string name;
  std::string classes;  // between blanks
  std::string id;
  std::optional<Rect> frame;
  std::string text;  // what a row would read if this were its text's element
  int depth = 0;     // below the element that the list is of
};

// An element that was looked at, and why it was not taken; empty: it was.
struct ExplainedCandidate {
  ExplainedElement element;
  std::string whyNot;
};

// What a description has found in a window.
struct ExplainedView {
  PlayerDescriptionPtr description;
  std::string whyNot;  // why it was not tried, or has no view; empty: it has
  std::vector<ExplainedCandidate> candidates;  // for the view: those of its roles
  std::optional<Rect> viewport;                // what the page shows of it
  std::vector<ExplainedCandidate> rows;        // with the row's own text and frame
  std::string title;                           // "TITLE — ARTIST"
};

// What a reading of a described player's window comes across, step by step.
struct WindowExplanation {
  std::string whyNot;   // why nothing further was found: a sentence; empty: all steps were taken
  std::string program;  // what it calls itself on the accessibility bus
  std::optional<ExplainedElement> frame;  // its window in front
  bool hasMediaPlayer = false;
  std::string played;  // "TITLE — ARTIST" of that
  std::string page;    // address of the page in front; empty: no page
  std::vector<ExplainedView> views;
  // Elements that have a text of their own and those around them, in the tree's order: what a view
  // and its rows may be described by. Of a page that in front, else of the window.
  std::vector<ExplainedElement> elements;
};

// Looks through the window as a reading does, but to the end and with `patience` for it; of a
// browser too only while it has a media player. Waits; any thread.
WindowExplanation explainWindow(const PlayerWindow& window, std::chrono::milliseconds patience);

}  // namespace vellora
