#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// The windows in an answer to GET_TREE that say which process they are of: those that were in front
// later first. Nothing where the text is no tree. A window's rectangle in the tree is the place of
// its container without the title bar, and "window_rect", relative to that, the window without its
// borders; shadows that a program draws are in neither. Any thread.
std::optional<std::vector<LocatedWindow>> windowsInI3Tree(std::string_view json);

}  // namespace vellora
