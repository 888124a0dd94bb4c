#pragma once

#include <memory>

#include "companion/view/view_state.h"

namespace vellora::companion {

// The view on a terminal: fills it, takes keys, follows its size, and leaves it as it was. Null
// where standard input and output are not both a terminal that can do that. One at a time, main
// thread.
std::unique_ptr<View> makeTerminalView();

// What a key asks for; `key` is a character or one of curses' key codes.
std::optional<Wish> wishOf(int key);

}  // namespace vellora::companion
