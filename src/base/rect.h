#pragma once

namespace vellora {

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

// A rectangle of double-precision points with the arithmetic of Core Graphics: every question below
// is asked of the rectangle with its width and height made positive, and the null rectangle, which
// is where nothing is, is told apart from every other. Which way y grows is the user's affair.
// Source: the CGGeometry reference.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  // The null rectangle: at infinity, without size.
  static Rect null();

  // The rectangle with the same area whose width and height are not negative; null stays null.
  Rect standardized() const;

  double minX() const;
  double midX() const;
  double maxX() const;
  double minY() const;
  double midY() const;
  double maxY() const;

  // Size with its sign removed.
  double absoluteWidth() const;
  double absoluteHeight() const;

  // At infinity on either axis.
  bool isNull() const;
  // Null, or without area.
  bool isEmpty() const;

  // A point on the left or top edge is inside, one on the right or bottom edge is not.
  bool contains(Point point) const;
  // Whether `other` lies wholly inside; everything contains null, null contains nothing else.
  bool contains(const Rect& other) const;
  // Whether the two meet; rectangles that only touch do.
  bool intersects(const Rect& other) const;
  // The common part, null when there is none.
  Rect intersection(const Rect& other) const;

  // Moved by (dx, dy); null stays null.
  Rect offsetBy(double dx, double dy) const;
  // Shrunk by dx at the left and the right, by dy at the top and the bottom (negative grows); null
  // when that leaves less than nothing.
  Rect insetBy(double dx, double dy) const;

  // Two rectangles are equal when they cover the same area, whatever the signs of their sizes.
  friend bool operator==(const Rect& a, const Rect& b);
};

}  // namespace vellora
