#pragma once

#include <ostream>

#include "platform/linux/accessibility/view_explanation.h"
#include "platform/linux/players_tool/front_window.h"

namespace vellora {

// Whether a description was found whose view has rows.
bool hasRows(const WindowExplanation& explanation);

// Tells what Vellora makes of a window: which description counts and what it finds, row by row; of
// each that does not count why; and what could be written in one.
void showWindow(const FrontWindow& window, const WindowExplanation& explanation,
                std::ostream& output);

}  // namespace vellora
