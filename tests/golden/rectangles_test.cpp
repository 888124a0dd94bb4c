#include <bit>
#include <cmath>
#include <cstdint>
#include <stdexcept>

#include <gtest/gtest.h>

#include "base/rect.h"
#include "golden/golden_table.h"

namespace vellora {
namespace {

std::vector<double> numbers(const std::string& field, std::size_t count) {
  std::vector<double> result;
  for (std::size_t begin = 0; begin <= field.size();) {
    const std::size_t end = std::min(field.find(',', begin), field.size());
    result.push_back(golden::number(field.substr(begin, end - begin)));
    begin = end + 1;
  }
  if (result.size() != count) throw std::runtime_error("not so many numbers: " + field);
  return result;
}

Rect rectangle(const std::string& field) {
  if (field == "null") return Rect::null();
  const std::vector<double> parts = numbers(field, 4);
  return {parts[0], parts[1], parts[2], parts[3]};
}

bool flag(const std::string& field) {
  if (field != "true" && field != "false") throw std::runtime_error("no flag: " + field);
  return field == "true";
}

// To the bit, signs of zero included.
bool same(double a, double b) {
  if (std::isnan(a)) return std::isnan(b);
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool same(const Rect& actual, const std::string& field) {
  if (field == "null") return actual.isNull();
  const Rect expected = rectangle(field);
  return !actual.isNull() && same(actual.x, expected.x) && same(actual.y, expected.y) &&
         same(actual.width, expected.width) && same(actual.height, expected.height);
}

TEST(GoldenTest, PairsOfRectangles) {
  golden::everyRow("rectangles.tsv", 6, [](const golden::Row& row) -> std::string {
    const Rect a = rectangle(row[0]);
    const Rect b = rectangle(row[1]);
    if (!same(a.intersection(b), row[2])) return "intersection";
    if (a.intersects(b) != flag(row[3])) return "intersects";
    if (a.contains(b) != flag(row[4])) return "contains";
    if ((a == b) != flag(row[5])) return "equals";
    return "";
  });
}

TEST(GoldenTest, PointsInRectangles) {
  golden::everyRow("rectangle-points.tsv", 3, [](const golden::Row& row) -> std::string {
    const std::vector<double> point = numbers(row[1], 2);
    return rectangle(row[0]).contains(Point{point[0], point[1]}) == flag(row[2]) ? "" : "contains";
  });
}

TEST(GoldenTest, PartsOfRectangles) {
  golden::everyRow("rectangle-parts.tsv", 14, [](const golden::Row& row) -> std::string {
    const auto part = [&row](std::size_t column) { return golden::number(row[column]); };
    // Whatever lies at infinity is written as null: such a rectangle is told by its parts.
    const Rect r = row[0] == "null" ? Rect{part(3), part(6), part(9), part(10)} : rectangle(row[0]);
    if (r.isNull() != flag(row[1])) return "null";
    if (r.isEmpty() != flag(row[2])) return "empty";
    const double parts[] = {r.minX(), r.midX(), r.maxX(),          r.minY(),
                            r.midY(), r.maxY(), r.absoluteWidth(), r.absoluteHeight()};
    for (std::size_t at = 0; at < std::size(parts); ++at) {
      if (!same(parts[at], part(3 + at))) return "part in column " + std::to_string(4 + at);
    }
    if (!same(r.standardized(), row[11])) return "standardized";
    if (!same(r.offsetBy(-3, 4), row[12])) return "offset";
    if (!same(r.insetBy(9, 4), row[13])) return "inset";
    return "";
  });
}

}  // namespace
}  // namespace vellora
