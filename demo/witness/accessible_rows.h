#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"

namespace vellora::witness {

struct SeenRow {
  std::string text;
  Rect frame;
  bool operator==(const SeenRow&) const = default;
};

// What an accessibility client of its own, which shares no code with the overlay, sees of a player.
// Frames are in points of the screen: as many pixels each as the player's toolkit scales by.
struct SeenPlayer {
  std::string title;  // of the now-playing element
  Rect window;        // with what the window manager put around it
  Rect viewport;      // the lyrics' scroll area, clipped to the window
  std::vector<SeenRow> rows;
  SeenRow lyricsSwitch;  // the button that shows and hides them
  bool operator==(const SeenPlayer&) const = default;
};

// The same with every frame further right and down: what a program tells that does not know where
// its window is counts from the window's content.
SeenPlayer movedBy(SeenPlayer seen, Point origin);

// Reads the first window of the application of that name on the accessibility bus, one plain
// synchronous question after the other (org.a11y.atspi.Accessible, .Component). Nothing when there
// is no such application or it does not answer within a second a question.
std::optional<SeenPlayer> readPlayer(const std::string& application);

}  // namespace vellora::witness
