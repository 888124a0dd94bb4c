#pragma once

namespace vellora {

// How far one reading of a player's window goes.
struct ReadingLimits {
  int elements = 700;              // visited, the window among them
  double seconds = 0.3;            // after the walk's start, in which a visit may begin
  int depth = 23;                  // the window is at depth 0
  float messagingTimeout = 0.08F;  // seconds a query of the application element
};

}  // namespace vellora
