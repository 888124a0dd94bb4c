#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "exchange/records/json_tree.h"

namespace vellora {

// Single JSON values. Any thread.

// Appends the value's JSON text to `out`: compact, strings as RFC 8259 has them with "/" as "\/"
// and nothing else escaped that need not be, U+FFFD for what is not UTF-8. False for a number that
// is not finite; `out` is then of no use.
bool appendJson(std::string& out, bool value);
bool appendJson(std::string& out, std::int64_t value);
bool appendJson(std::string& out, double value);
bool appendJson(std::string& out, std::string_view value);

// Reads the value into a field of that type; false when it is of another type, or a number that the
// field cannot hold. Nothing is converted between texts, flags and numbers. An integer field takes
// every number that spells an integer, 1.0 and 1e0 too; a floating-point field takes none that
// would become zero by being too small.
bool readJson(JsonValue& json, bool& field);
bool readJson(JsonValue& json, std::int64_t& field);
bool readJson(JsonValue& json, double& field);
bool readJson(JsonValue& json, std::string& field);  // moves the text out of `json`

}  // namespace vellora
