#include <map>
#include <string>

#include <gtest/gtest.h>

#include "companion/readings/reader.h"
#include "golden/golden_table.h"

namespace vellora::companion {
namespace {

const auto always = [] { return true; };

// Each row is a song of one line.
TEST(ReadingsGolden, EveryLineIsReadAsTheTableSays) {
  golden::everyRow("readings.tsv", 4, [](const golden::Row& row) {
    static std::map<ReadingKind, Reader> readers;
    const auto kind = readingKindOf(row[0]);
    if (!kind) return "no such kind: " + row[0];
    const auto reading =
        readers.try_emplace(*kind, *kind).first->second.read({row[1]}, always).front();
    return reading == row[2] ? std::string() : row[1] + " is read " + reading + ", not " + row[2];
  });
}

}  // namespace
}  // namespace vellora::companion
