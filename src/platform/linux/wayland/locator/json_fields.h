#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "base/rect.h"
#include "platform/linux/glib/glib_ptr.h"

namespace vellora::JsonFields {

// What a compositor's JSON says under a key; nothing, or the empty value, where it says something
// of another kind. None of these throws. Any thread.
using Json = nlohmann::json;

// Null where the text is no JSON. Bytes that are no UTF-8 become U+FFFD: compositors pass titles of
// X11 programs on as they are.
inline Json parse(std::string_view text) {
  const GCharPtr valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
  Json parsed = Json::parse(valid.get(), nullptr, false);
  // Never copied: that would go as deep as the text does.
  if (parsed.is_discarded()) parsed = nullptr;
  return parsed;
}

// Null where there is none.
inline const Json* field(const Json& object, const char* key) {
  if (!object.is_object()) return nullptr;
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

inline std::string text(const Json& object, const char* key) {
  const Json* const value = field(object, key);
  return value != nullptr && value->is_string() ? value->get<std::string>() : std::string();
}

inline bool isTrue(const Json& object, const char* key) {
  const Json* const value = field(object, key);
  return value != nullptr && value->is_boolean() && value->get<bool>();
}

// A number that a screen's coordinates may have.
inline std::optional<double> coordinate(const Json* value) {
  constexpr double furthest = 1e6;
  if (value == nullptr || !value->is_number()) return std::nullopt;
  const auto number = value->get<double>();
  if (!(std::abs(number) <= furthest)) return std::nullopt;
  return number;
}

// A process's number; 0 where it is none.
inline std::int32_t process(const Json& object, const char* key) {
  const Json* const value = field(object, key);
  if (value == nullptr || !value->is_number_integer()) return 0;
  const auto number = value->get<std::int64_t>();
  const bool fits = number > 0 && number <= std::numeric_limits<std::int32_t>::max();
  return fits ? static_cast<std::int32_t>(number) : 0;
}

}  // namespace vellora::JsonFields
