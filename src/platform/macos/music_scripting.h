#pragma once

#include <memory>

#include "platform/music_scripting.h"

namespace vellora {

// Runs each request's script text through NSAppleScript; the command beside it is not looked at.
std::unique_ptr<MusicScripting> makeAppleScripting();

}  // namespace vellora
