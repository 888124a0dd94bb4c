#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/rect.h"
#include "music/music_layout.h"
#include "platform/accessibility.h"
#include "platform/clock.h"

namespace vellora {

// Reads the first window of the process: its frame, the lyrics' viewport, the title of what plays
// and every lyric row. Nothing when the window cannot be read (no permission, no such process, no
// window, minimised, without a frame); a tree that is too deep, too large or too slow for `limits`
// is cut short and gives what was found until then. Keeps nothing between calls. Any one thread;
// blocks for as long as the queries take; once the walk has begun, for `ReadingLimits::seconds` and
// the queries of one element at most.
std::optional<MusicLayout> readMusic(std::int32_t pid, Accessibility& accessibility,
                                     const Clock& clock, const Player& player = musicPlayer,
                                     const ReadingLimits& limits = {});

// What the element answers for the attribute; nothing when the query fails.
AttributeValue attribute(AccessibilityElement& element, std::string_view name);

// The attribute when it is a text, else the empty text.
std::string string(AccessibilityElement& element, std::string_view name);

// The element's position and size in accessibility coordinates; nothing unless both are there and
// the width and the height are greater than zero.
std::optional<Rect> frame(AccessibilityElement& element);

}  // namespace vellora
