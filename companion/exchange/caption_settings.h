#pragma once

#include "companion/song/song.h"

namespace vellora::companion {

// How the captions shall look.
struct CaptionSettings {
  static constexpr double smallestFont = 8, largestFont = 96, farthestOffset = 400;

  double fontSize = 26;       // points
  double verticalOffset = 0;  // points, positive moves captions down
  bool shown = true;
  ReadingPlace reading = ReadingPlace::above;

  // Within their bounds.
  void changeFontSize(double points);
  void changeOffset(double points);
};

}  // namespace vellora::companion
