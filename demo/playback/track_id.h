#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellora::demo {

// The D-Bus object path by which MPRIS clients name the song at `index` of the library.
std::string trackId(std::size_t index);

// The song that a path names; nothing for a path that names none of `count`.
std::optional<std::size_t> trackIndex(std::string_view id, std::size_t count);

// MPRIS counts whole microseconds.
std::int64_t microseconds(double seconds);
double secondsFrom(std::int64_t microseconds);

}  // namespace vellora::demo
