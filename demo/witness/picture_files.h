#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "witness/screen.h"

namespace vellora::witness {

// A picture in the form "P6" of Netpbm with 255 levels (ppm(5)), which most programs that take
// pictures of screens write. Nothing where it is another form or cut short. Any thread.
std::optional<Picture> readPpm(std::string_view bytes);

// A screen that is no more than two pictures from files of that form: what a person saw, and the
// same without what stood above the player's window. For desktops where one program may not look at
// another's windows, so that somebody else takes the pictures. Null where either cannot be read.
std::unique_ptr<Screen> openPictures(const std::string& whole, const std::string& alone);

}  // namespace vellora::witness
