#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vellora {

// A number as it stands in the file: only the field that it is for decides how it is read.
struct JsonNumber {
  std::string text;
};

struct JsonValue;
using JsonArray = std::vector<JsonValue>;

// The members in the order of the file, repeated keys included.
struct JsonObject {
  std::vector<std::pair<std::string, JsonValue>> members;

  // The first member of that name; null when there is none.
  JsonValue* find(std::string_view key);
};

struct JsonValue {
  std::variant<std::nullptr_t, bool, JsonNumber, std::string, JsonArray, JsonObject> value;
};

// Objects and arrays may stand inside each other this deep, the outermost counted.
inline constexpr std::size_t deepestJson = 512;

// Where a value stands in a text: its first byte, and the one after its last.
struct JsonPlace {
  std::size_t begin = 0;
  std::size_t end = 0;

  friend bool operator==(const JsonPlace&, const JsonPlace&) = default;
};

// The one value that a JSON text (RFC 8259, UTF-8, a byte-order mark skipped) holds; nothing for a
// text that is ill-formed, nests deeper than `deepestJson` or has a number too large for a double.
// Any thread.
std::optional<JsonValue> parseJson(std::string_view text);

// An array whose values are wanted one by one, so that not all of them need room at once: that of
// the first member `key` of the outermost object.
struct JsonElements {
  std::string_view key;
  // Called for each value, in order; false ends the reading without a result. What was taken is of
  // no use where the text turns out to be ill-formed behind it.
  std::function<bool(JsonValue&)> take;
  JsonPlace place;  // set by the reading: where the array stands; empty where that member is none
};

// The same, but the array of `elements` stays empty in the result.
std::optional<JsonValue> parseJson(std::string_view text, JsonElements& elements);

}  // namespace vellora
