#include "render/geometry.h"

#include <cmath>

namespace vellora {

namespace {

constexpr double gapUnderRow = 2;
constexpr double marginAboveNextRow = 3;
constexpr double leftInset = 2;
constexpr double rightReserve = 24;  // counted from the left edge before its inset
constexpr double widestRowWithoutCaption = 40;
constexpr double narrowestCaption = 80;

constexpr double focusPosition = 0.35;  // this and the next two in heights of the viewport
constexpr double sharpBand = 0.055;
constexpr double rampLength = 0.14;
constexpr double softnessSteps = 8;

}  // namespace

Rect OverlayGeometry::appKitRect(const Rect& rect, double primaryHeight) {
  return {rect.minX(), primaryHeight - rect.maxY(), rect.absoluteWidth(), rect.absoluteHeight()};
}

// Each test is written so that a number that is none fails it.
std::optional<Rect> OverlayGeometry::labelRect(const Rect& row, const std::optional<Rect>& nextRow,
                                               const Rect& viewport, double height, double offset) {
  if (!viewport.contains(Point{row.midX(), row.midY()})) return std::nullopt;
  if (!(row.absoluteWidth() > widestRowWithoutCaption)) return std::nullopt;
  const double top = offset + row.maxY() + gapUnderRow;
  const double below = nextRow ? nextRow->minY() : viewport.maxY();
  const double limit = std::fmin(below, viewport.maxY());
  if (!(height <= limit - top - marginAboveNextRow)) return std::nullopt;
  const double left = std::fmax(row.minX(), viewport.minX());
  const double width = viewport.maxX() - left - rightReserve;
  if (!(width >= narrowestCaption)) return std::nullopt;
  const Rect label{left + leftInset, top, width, height};
  if (!viewport.contains(label)) return std::nullopt;
  return label;
}

double OverlayFocus::softness(const Rect& row, const Rect& viewport) {
  if (!(viewport.absoluteHeight() > 0)) return 0;
  if (!row.intersects(viewport)) return 0;
  const double focus = viewport.minY() + viewport.absoluteHeight() * focusPosition;
  const double distance = std::fabs(row.minY() - focus);
  const double ramp = (distance / viewport.absoluteHeight() - sharpBand) / rampLength;
  if (!(ramp >= 0)) return 0;
  return std::round(std::fmin(ramp, 1) * softnessSteps) / softnessSteps;
}

}  // namespace vellora
