#pragma once

#include <string_view>

namespace vellora::OverlayMatching {

// Whether `description`, the text of the player's now-playing title, names the track: whether its
// key begins with the keys of `title` and `artist`, joined. What separates the two, and what
// follows them, does not count. False where the title or the artist has an empty key. Any thread.
bool trackMatches(std::string_view description, std::string_view title, std::string_view artist);

}  // namespace vellora::OverlayMatching
