#pragma once

#include <string>
#include <vector>

#include "base/rect.h"

namespace vellora {

// One lyric row as the player shows it. Accessibility coordinates: points, origin at the top left
// of the primary screen, y downward.
struct MusicRow {
  std::string text;  // never empty
  Rect frame;        // of positive width and height
};

// By which of `ReadingLimits` a reading was cut: whether anything was left out for want of elements
// or of depth, and whether its time was over, so that what was asked last may be missing and
// nothing more was asked.
struct ReadingCut {
  bool byElements = false;
  bool byTime = false;
  bool byDepth = false;

  explicit operator bool() const { return byElements || byTime || byDepth; }
};

// One reading of the player's window, in the same coordinates.
struct MusicLayout {
  Rect window;
  Rect viewport;               // visible part of the lyrics' scroll area; zero when there is none
  std::string title;           // of what plays; empty when it was not met
  std::vector<MusicRow> rows;  // top first
  ReadingCut cut = {};         // for people who look into a reading; no caption depends on it
};

}  // namespace vellora
