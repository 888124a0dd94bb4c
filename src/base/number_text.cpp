#include "base/number_text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

#include <fast_float/fast_float.h>
#include <fmt/format.h>

namespace vellora {

namespace {

// The shortest decimal as its digits and the power of ten of the first one: 42.5 is 425 and 1.
struct ShortestDecimal {
  bool negative = false;
  std::string digits;
  int exponent = 0;
};

// {fmt} finds the digits; where it puts the point and when it takes an exponent is its own affair
// and is undone here.
ShortestDecimal shortestDecimal(double value) {
  ShortestDecimal result;
  const std::string text = fmt::format("{}", value);
  std::string_view rest = text;
  if (rest.starts_with('-')) {
    result.negative = true;
    rest.remove_prefix(1);
  }
  const std::size_t mark = rest.find('e');
  const std::string_view mantissa = rest.substr(0, mark);
  int exponent = 0;
  if (mark != std::string_view::npos) {
    std::string_view power = rest.substr(mark + 1);
    if (power.starts_with('+')) power.remove_prefix(1);
    std::from_chars(power.data(), power.data() + power.size(), exponent);
  }
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  exponent += static_cast<int>(point) - 1;
  for (const char c : mantissa) {
    if (c != '.') result.digits.push_back(c);
  }
  const std::size_t zeros =
      std::min(result.digits.find_first_not_of('0'), result.digits.size() - 1);
  result.digits.erase(0, zeros);
  exponent -= static_cast<int>(zeros);
  result.digits.erase(std::max<std::size_t>(result.digits.find_last_not_of('0') + 1, 1));
  result.exponent = result.digits == "0" ? 0 : exponent;
  return result;
}

std::string spell(double value, bool alwaysFraction) {
  const ShortestDecimal decimal = shortestDecimal(value);
  const std::string& digits = decimal.digits;
  const auto count = static_cast<int>(digits.size());
  std::string text(decimal.negative ? "-" : "");
  // 2^53 is the last magnitude up to which every integer is a double of its own.
  if (value != 0 && (decimal.exponent < -4 || std::fabs(value) > 0x1p53)) {
    text += digits[0];
    if (count > 1) text.append(".").append(digits, 1);
    const int power = std::abs(decimal.exponent);
    text.append(decimal.exponent < 0 ? "e-" : "e+").append(power < 10 ? "0" : "");
    return text += fmt::format("{}", power);
  }
  if (decimal.exponent < 0) {
    text.append("0.").append(static_cast<std::size_t>(-decimal.exponent) - 1, '0');
    return text += digits;
  }
  if (count > decimal.exponent + 1) {
    const auto whole = static_cast<std::size_t>(decimal.exponent) + 1;
    return text.append(digits, 0, whole).append(".").append(digits, whole);
  }
  text.append(digits).append(static_cast<std::size_t>(decimal.exponent + 1 - count), '0');
  return alwaysFraction ? text += ".0" : text;
}

bool equalsIgnoringCase(std::string_view text, std::string_view lowercase) {
  return std::ranges::equal(
      text, lowercase, [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; });
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// mantissa × 2^exponent, rounded to nearest, ties to even, once: also where the result is
// subnormal.
double roundedToDouble(std::uint64_t mantissa, std::int64_t exponent) {
  if (mantissa == 0) return 0;
  const auto width = static_cast<std::int64_t>(std::bit_width(mantissa));
  const std::int64_t last = std::max<std::int64_t>(exponent + width - 53, -1074);
  const std::int64_t dropped = last - exponent;
  if (dropped > width) return 0;
  if (dropped > 0) {
    const std::uint64_t half = std::uint64_t{1} << (dropped - 1);
    const std::uint64_t rest = dropped == 64 ? mantissa : mantissa & (2 * half - 1);
    mantissa = dropped == 64 ? 0 : mantissa >> dropped;
    if (rest > half || (rest == half && mantissa % 2 == 1)) ++mantissa;
    exponent = last;
  }
  const auto clamped = static_cast<int>(std::clamp<std::int64_t>(exponent, -5000, 5000));
  return std::ldexp(static_cast<double>(mantissa), clamped);
}

// What stands after "0x".
std::optional<double> parseHexadecimal(std::string_view text) {
  std::uint64_t mantissa = 0;
  std::int64_t exponent = 0;
  bool anyDigit = false;
  bool afterPoint = false;
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    if (text[i] == '.' && !afterPoint) {
      afterPoint = true;
      continue;
    }
    const int digit = hexDigit(text[i]);
    if (digit < 0) break;
    anyDigit = true;
    if (mantissa >> 58 == 0) {
      mantissa = mantissa * 16 + static_cast<std::uint64_t>(digit);
      if (afterPoint) exponent -= 4;
    } else {
      // No room: the digit lives on only as a bit that tells that something was dropped.
      if (digit != 0) mantissa |= 1;
      if (!afterPoint) exponent += 4;
    }
  }
  if (!anyDigit) return std::nullopt;
  if (i < text.size()) {
    if (text[i] != 'p' && text[i] != 'P') return std::nullopt;
    const bool signedPower = i + 1 < text.size() && (text[i + 1] == '+' || text[i + 1] == '-');
    const bool negative = signedPower && text[i + 1] == '-';
    i += signedPower ? 2 : 1;
    if (i == text.size()) return std::nullopt;
    std::int64_t power = 0;
    for (; i < text.size(); ++i) {
      if (!isDigit(text[i])) return std::nullopt;
      power = std::min<std::int64_t>(power * 10 + (text[i] - '0'), std::int64_t{1} << 40);
    }
    exponent += negative ? -power : power;
  }
  return roundedToDouble(mantissa, exponent);
}

// What stands after "nan": nothing, or a payload in parentheses, which is kept where it is a
// number.
std::optional<double> parseNaN(std::string_view text) {
  constexpr std::uint64_t quiet = 0x7FF8'0000'0000'0000;
  if (text.empty()) return std::bit_cast<double>(quiet);
  if (text.size() < 2 || text.front() != '(' || text.back() != ')') return std::nullopt;
  std::string_view payload = text.substr(1, text.size() - 2);
  const bool allowed = std::ranges::all_of(payload, [](char c) {
    return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  });
  if (!allowed) return std::nullopt;
  int base = 10;
  if (payload.starts_with("0x") || payload.starts_with("0X")) {
    base = 16;
    payload.remove_prefix(2);
  } else if (payload.starts_with('0')) {
    base = 8;
  }
  std::uint64_t bits = 0;
  const char* const last = payload.data() + payload.size();
  const auto [end, error] = std::from_chars(payload.data(), last, bits, base);
  if (error == std::errc::result_out_of_range) bits = ~std::uint64_t{0};
  if (end != last || error == std::errc::invalid_argument) bits = 0;
  return std::bit_cast<double>(quiet | (bits & 0x7'FFFF'FFFF'FFFF));
}

}  // namespace

std::optional<std::string> jsonNumber(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  return spell(value, false);
}

std::string plainNumber(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  return spell(value, true);
}

std::optional<double> parseDecimal(std::string_view text) {
  const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
  if (digits.empty() || !(isDigit(digits[0]) || digits[0] == '.')) return std::nullopt;
  double value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = fast_float::from_chars(text.data(), last, value);
  // Releases differ in whether they also report a value that is too large or too small.
  if (error == std::errc::invalid_argument || end != last) return std::nullopt;
  return value;
}

std::optional<double> parseNumber(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  bool negative = false;
  if (text.starts_with('-') || text.starts_with('+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  if (text.starts_with('-')) return std::nullopt;
  std::optional<double> value;
  if (equalsIgnoringCase(text, "inf") || equalsIgnoringCase(text, "infinity")) {
    value = std::numeric_limits<double>::infinity();
  } else if (equalsIgnoringCase(text.substr(0, 3), "nan")) {
    value = parseNaN(text.substr(3));
  } else if (equalsIgnoringCase(text.substr(0, 2), "0x")) {
    value = parseHexadecimal(text.substr(2));
  } else {
    value = parseDecimal(text);
  }
  if (value && negative) value = -*value;
  return value;
}

}  // namespace vellora
