#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vellora::golden {

using Row = std::vector<std::string>;

// Reads a table (tab-separated; lines that begin with "# " are comments) from the folder named by
// the environment variable VELLORA_GOLDENS, else from tests/golden, and calls `check` with each
// row. `check` returns what is wrong, or an empty text. Fails the running test for a table that
// cannot be read, has no rows, or has a row with fewer than `columns` columns, and for each wrong
// row (the first twenty are printed). Says how many rows were checked.
void everyRow(const std::string& table, std::size_t columns,
              const std::function<std::string(const Row&)>& check);

// The fields' forms. Each throws std::runtime_error on a field of another form, which fails the
// row.
std::string fromBase64(std::string_view field);
// "0041 0300" as UTF-8; an empty field is the empty text.
std::string fromCodePoints(std::string_view field);
// One code point in hex.
char32_t codePoint(std::string_view field);
// A double by the hex of its 64 bits.
double fromBits(std::string_view field);
// A double as the tables print it: shortest form, "inf", "-inf", "nan".
double number(std::string_view field);

// How a text appears in a message: its code points in hex.
std::string toCodePoints(std::string_view text);

}  // namespace vellora::golden
