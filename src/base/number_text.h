#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellora {

// Numbers as text, the same under every locale. Any thread.

// Shortest decimal that reads back as `value`, as JSON writes it: no ".0", an exponent with a sign
// and at least two digits below 1e-4 and above 2^53. Nothing for NaN and the infinities.
std::optional<std::string> jsonNumber(double value);

// Shortest decimal that reads back as `value`, with at least one digit after the point; "inf",
// "-inf" and "nan" for what is not finite.
std::string plainNumber(double value);

// The number that the whole of `text` spells: decimal or hexadecimal with an optional sign,
// fraction and exponent, "inf" or "nan"; too large reads as infinite. Nothing where any other
// character stands, blanks included.
std::optional<double> parseNumber(std::string_view text);

}  // namespace vellora
