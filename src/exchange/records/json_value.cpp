#include "exchange/records/json_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>
#include <variant>

#include "base/number_text.h"
#include "base/utf8.h"

namespace vellora {

namespace {

std::optional<std::int64_t> wholeInteger(std::string_view text) {
  std::int64_t value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (error != std::errc() || end != last) return std::nullopt;
  return value;
}

// The digits of a literal before its decimal point, once its exponent has moved that point.
std::string digitsBeforePoint(std::string_view literal) {
  const std::size_t mark = literal.find_first_of("eE");
  const std::string_view mantissa = literal.substr(0, mark);
  int exponent = 0;
  if (mark != std::string_view::npos) {
    std::string_view power = literal.substr(mark + 1);
    if (power.starts_with('+')) power.remove_prefix(1);
    std::from_chars(power.data(), power.data() + power.size(), exponent);
  }
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  std::string digits(mantissa.substr(0, point));
  if (point < mantissa.size()) digits += mantissa.substr(point + 1);
  digits.resize(static_cast<std::size_t>(std::max(static_cast<int>(point) + exponent, 0)), '0');
  return digits;
}

std::optional<std::int64_t> integer(const std::string& literal) {
  if (const auto value = wholeInteger(literal)) return value;
  const std::optional<double> value = parseDecimal(literal);
  if (!value || std::trunc(*value) != *value || *value < -0x1p63 || *value >= 0x1p63) {
    return std::nullopt;
  }
  if (std::fabs(*value) < 0x1p53) return static_cast<std::int64_t>(*value);
  // From here on a double stands for several integers: only the digits tell which one is meant.
  return wholeInteger(digitsBeforePoint(literal));
}

// Whether a literal spells zero and not merely something too small for a double.
bool spellsZero(std::string_view literal) {
  const std::string_view mantissa = literal.substr(0, literal.find_first_of("eE"));
  return mantissa.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

bool appendJson(std::string& out, bool value) {
  out += value ? "true" : "false";
  return true;
}

bool appendJson(std::string& out, std::int64_t value) {
  std::array<char, 24> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  out.append(buffer.data(), result.ptr);
  return true;
}

bool appendJson(std::string& out, double value) {
  const std::optional<std::string> text = jsonNumber(value);
  if (!text) return false;
  out += *text;
  return true;
}

bool appendJson(std::string& out, std::string_view value) {
  if (!isWellFormed(value)) return appendJson(out, std::string_view(wellFormed(value)));
  static constexpr std::string_view hexDigits = "0123456789abcdef";
  out += '"';
  for (const char c : value) {
    switch (c) {
      case '"':
      case '\\':
      case '/':
        (out += '\\') += c;
        break;
      case '\b':
        out += "\\b";
        break;
      case '\f':
        out += "\\f";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default: {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
          ((out += "\\u00") += hexDigits[byte >> 4]) += hexDigits[byte & 0xF];
        } else {
          out += c;
        }
      }
    }
  }
  out += '"';
  return true;
}

bool readJson(JsonValue& json, bool& field) {
  const bool* const value = std::get_if<bool>(&json.value);
  if (value != nullptr) field = *value;
  return value != nullptr;
}

bool readJson(JsonValue& json, std::int64_t& field) {
  const auto* const number = std::get_if<JsonNumber>(&json.value);
  if (number == nullptr) return false;
  const std::optional<std::int64_t> value = integer(number->text);
  field = value.value_or(0);
  return value.has_value();
}

bool readJson(JsonValue& json, double& field) {
  const auto* const number = std::get_if<JsonNumber>(&json.value);
  if (number == nullptr) return false;
  const std::optional<double> value = parseDecimal(number->text);
  if (!value || !std::isfinite(*value) || (*value == 0 && !spellsZero(number->text))) return false;
  field = *value;
  return true;
}

bool readJson(JsonValue& json, std::string& field) {
  auto* const value = std::get_if<std::string>(&json.value);
  if (value == nullptr) return false;
  field = std::move(*value);
  return true;
}

}  // namespace vellora
