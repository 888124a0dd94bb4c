#include <bit>
#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/number_text.h"
#include "golden/golden_table.h"
#include "music/command_script.h"

namespace vellora::golden {
namespace {

TEST(NumbersGoldenTest, DoublesAreWrittenAsTheTableHasThem) {
  everyRow("doubles.tsv", 3, [](const Row& row) -> std::string {
    const double value = fromBits(row[0]);
    const std::string json = jsonNumber(value).value_or("nothing");
    if (json != row[1]) return "JSON has " + json;
    const std::string plain = plainNumber(value);
    return plain == row[2] ? "" : "the plain form is " + plain;
  });
}

TEST(NumbersGoldenTest, NumbersAreReadAsTheTableHasThem) {
  everyRow("number-parsing.tsv", 2, [](const Row& row) -> std::string {
    const std::optional<double> value = parseNumber(fromBase64(row[0]));
    if (row[1] == "nothing") return value ? "read as " + plainNumber(*value) : "";
    if (!value) return "not read";
    const bool same =
        std::bit_cast<std::uint64_t>(*value) == std::bit_cast<std::uint64_t>(fromBits(row[1]));
    return same ? "" : "read as " + plainNumber(*value);
  });
}

TEST(NumbersGoldenTest, PositionsBecomeTheMillisecondsOfTheTable) {
  everyRow("milliseconds.tsv", 2, [](const Row& row) -> std::string {
    const std::optional<std::int64_t> value = wholeMilliseconds(fromBits(row[0]));
    const std::string actual = value ? std::to_string(*value) : "fatal";
    return actual == row[1] ? "" : "milliseconds: " + actual;
  });
}

}  // namespace
}  // namespace vellora::golden
