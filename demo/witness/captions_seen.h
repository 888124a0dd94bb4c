#pragma once

#include <string>
#include <vector>

#include "exchange/records/records.h"
#include "witness/accessible_rows.h"
#include "witness/screen.h"

namespace vellora::witness {

// What the pictures show about one row.
struct RowVerdict {
  std::string text;
  bool expected = false;      // the snapshot has a translation for it, and there is room below it
  bool undecided = false;     // too little room to say what must be there
  bool beyondScreen = false;  // its caption's place is off the screen: nobody can see what is there
  Rect band;                  // where its caption belongs, in pixels of the screen
  Difference seen;            // between the screen and the player's window alone
  bool right = false;         // a caption is seen exactly when it is expected and can be
};

struct CaptionsVerdict {
  std::vector<RowVerdict> rows;
  std::size_t captions = 0;      // expected and seen
  std::size_t beyondScreen = 0;  // expected where the screen does not reach
  bool right = false;            // every row is right, and a caption is seen at all
};

// How many pixels of the screen a point of the player is, by the two sizes of its window: the
// player may have been started with a scale of its own, and a session's may change at any time. A
// whole number, as the toolkit has it.
double pixelsPerPoint(const SeenPlayer& player, const WindowPicture& window);

// `rect` with each of its numbers multiplied by `scale`.
Rect scaled(const Rect& rect, double scale);

// Compares the screen with the player's window alone, in the band between each visible row's bottom
// and the next row's top, from the row's left edge to the viewport's right reserve.
CaptionsVerdict judgeCaptions(const SeenPlayer& player, const OverlaySnapshot& snapshot,
                              const Picture& screen, const WindowPicture& window);

}  // namespace vellora::witness
