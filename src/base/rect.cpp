#include "base/rect.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vellora {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

}  // namespace

Rect Rect::null() { return {infinity, infinity, 0, 0}; }

bool Rect::isNull() const { return x == infinity || y == infinity; }

bool Rect::isEmpty() const { return isNull() || width == 0 || height == 0; }

Rect Rect::standardized() const {
  if (isNull()) return null();
  return {minX(), minY(), absoluteWidth(), absoluteHeight()};
}

// The parts of null and of what else lies at infinity are those of its fields.
double Rect::minX() const { return width < 0 ? x + width : x; }
double Rect::midX() const { return x + width / 2; }
double Rect::maxX() const { return width < 0 ? x : x + width; }
double Rect::minY() const { return height < 0 ? y + height : y; }
double Rect::midY() const { return y + height / 2; }
double Rect::maxY() const { return height < 0 ? y : y + height; }
double Rect::absoluteWidth() const { return std::fabs(width); }
double Rect::absoluteHeight() const { return std::fabs(height); }

bool Rect::contains(Point point) const {
  if (isEmpty()) return false;
  return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
}

bool Rect::contains(const Rect& other) const {
  if (other.isNull()) return true;
  if (isNull()) return false;
  return other.minX() >= minX() && other.maxX() <= maxX() && other.minY() >= minY() &&
         other.maxY() <= maxY();
}

bool Rect::intersects(const Rect& other) const { return !intersection(other).isNull(); }

Rect Rect::intersection(const Rect& other) const {
  if (isNull() || other.isNull()) return null();
  const double left = std::max(minX(), other.minX());
  const double right = std::min(maxX(), other.maxX());
  const double top = std::max(minY(), other.minY());
  const double bottom = std::min(maxY(), other.maxY());
  if (left > right || top > bottom) return null();
  return {left, top, right - left, bottom - top};
}

Rect Rect::offsetBy(double dx, double dy) const {
  if (isNull()) return null();
  const Rect r = standardized();
  return {r.x + dx, r.y + dy, r.width, r.height};
}

Rect Rect::insetBy(double dx, double dy) const {
  if (isNull()) return null();
  const Rect r = standardized();
  const Rect result{r.x + dx, r.y + dy, r.width - 2 * dx, r.height - 2 * dy};
  return result.width < 0 || result.height < 0 ? null() : result;
}

bool operator==(const Rect& a, const Rect& b) {
  const Rect left = a.standardized();
  const Rect right = b.standardized();
  return left.x == right.x && left.y == right.y && left.width == right.width &&
         left.height == right.height;
}

}  // namespace vellora
