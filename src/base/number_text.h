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

// Shortest decimal that reads back as `value`: with at least one digit after the point, or with an
// exponent where `jsonNumber` has one; "inf", "-inf" and "nan" for what is not finite.
std::string plainNumber(double value);

// The number that the whole of `text` spells, as the C function strtod reads it: decimal or
// hexadecimal with an optional sign, fraction and exponent, "inf", "infinity", "nan" or "nan(…)" in
// any letter case; too large reads as infinite, too small as zero. Nothing where any other
// character stands, blanks included; a U+0000 ends the text.
std::optional<double> parseNumber(std::string_view text);

// The number that a decimal literal of RFC 8259 (or one with a fraction that lacks its digits on
// one side) spells, correctly rounded; infinite when too large. Nothing where other characters
// stand.
std::optional<double> parseDecimal(std::string_view text);

}  // namespace vellora
