#include "companion/exchange/caption_settings.h"

#include <algorithm>

namespace vellora::companion {

void CaptionSettings::changeFontSize(double points) {
  fontSize = std::clamp(fontSize + points, smallestFont, largestFont);
}

void CaptionSettings::changeOffset(double points) {
  verticalOffset = std::clamp(verticalOffset + points, -farthestOffset, farthestOffset);
}

}  // namespace vellora::companion
