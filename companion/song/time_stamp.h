#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vellora::companion {

// A time as people write it: "1:23", "01:23.45", "1:02:03.5", "83.5", each part digits only; a
// comma may stand for the point. Seconds. Nothing where the text is none, or minutes or seconds
// after the first part exceed 59.
std::optional<double> parseTime(std::string_view text);

// A stamp of LRC without its brackets: "mm:ss", "mm:ss.xx", "mm:ss.xxx", "mm:ss:xx" (hundredths),
// "hh:mm:ss.xx". Seconds.
std::optional<double> parseStamp(std::string_view text);

// Whether the text looks as if it were meant to be one: digits, then a colon.
bool looksLikeStamp(std::string_view text);

// "1:23"; "1:02:03" from an hour on. Fractions are dropped, negative times are 0.
std::string clockText(double seconds);

// "[01:23.45]", with as many minutes as it takes.
std::string stampText(double seconds);

}  // namespace vellora::companion
