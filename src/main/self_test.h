#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>

#include "controller/overlay_delegate.h"
#include "platform/platform.h"

namespace vellora {

// Size of the picture that the self-test drew, in pixels.
struct PixelSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

// Checks the way from a reading to pixels with a reading, a snapshot and captions of its own,
// without the player, a display or an exchange file, and writes the picture as PNG where a location
// is given (not atomically). Ends the process abnormally at the first check that fails, without a
// word; with a line on standard error where there is no picture to draw in or the file cannot be
// written. Main thread.
PixelSize runSelfTest(Platform& platform, const std::optional<std::filesystem::path>& picture,
                      std::ostream& output);

// Its check of what the composition made: a panel that lets clicks and the window below through,
// and one caption. Ends the process when it does not hold.
void checkComposition(const OverlayDelegate& controller);

// Alpha from 0 to 1 of the pixel under `point`, which is in the coordinates of a view of the given
// width (points, y downward) that was drawn into the bitmap; −1 outside the bitmap. A point that is
// no pixel number at all ends the process.
double alphaAt(const Bitmap& bitmap, double viewWidth, Point point);

}  // namespace vellora
