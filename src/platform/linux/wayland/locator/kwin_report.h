#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// The windows in what KWin's script of kwin_script.h reports; those higher in the stacking order
// first, the active one before all. Nothing where the text is no such report. Any thread.
std::optional<std::vector<LocatedWindow>> windowsInKWinReport(std::string_view json);

}  // namespace vellora
