#pragma once

#include <memory>

#include "platform/accessibility.h"
#include "platform/linux/accessibility/described_reading.h"
#include "platform/player.h"

namespace vellora {

// The window of a described player as the player itself would show it: in it the element that names
// what plays, and where the lyrics are there a scroll area with a button a row. Everything is known
// from the start, so its elements ask nothing and may outlive the reading.
std::shared_ptr<AccessibilityElement> makeDescribedWindow(const DescribedLayout& layout,
                                                          const Player& player);

}  // namespace vellora
