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
  bool expected = false;   // the snapshot has a translation for it, and there is room below it
  bool undecided = false;  // too little room to say what must be there
  Rect band;               // where its caption belongs
  Difference seen;         // between the screen and the player's window alone
  bool right = false;      // a caption is there exactly when it is expected
};

struct CaptionsVerdict {
  std::vector<RowVerdict> rows;
  std::size_t captions = 0;  // expected and seen
  bool right = false;        // every row is right, and there is a caption at all
};

// Compares the screen with the player's window alone, in the band between each visible row's bottom
// and the next row's top, from the row's left edge to the viewport's right reserve.
CaptionsVerdict judgeCaptions(const SeenPlayer& player, const OverlaySnapshot& snapshot,
                              const Picture& screen, const Picture& window);

}  // namespace vellora::witness
