#pragma once

#include <optional>

#include "platform/linux/accessibility/element_facts.h"
#include "platform/linux/accessibility/surface_placement.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// Where a program's window is by what the window system knows of it, as far as the facts say; lines
// up the questions that it lacks. Nothing where it is none of the window's surfaces.
std::optional<SurfacePlacement> findSurface(ElementFacts& facts, ElementIndex frame,
                                            const PlayerWindow& window);

}  // namespace vellora
