#include "platform/linux/wayland/session/output_layout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vellora {
namespace {

// Whether an axis of that many pixels has that many points, cut or rounded, at the scale.
bool fits(double scale, double pixels, double points) {
  return std::abs(pixels / scale - points) < 1;
}

double areaOf(const Rect& rect) { return rect.isNull() ? 0 : rect.width * rect.height; }

}  // namespace

const Output* OutputLayout::find(std::uint32_t id) const {
  const auto found = std::ranges::find(outputs, id, &Output::id);
  return found == outputs.end() ? nullptr : &*found;
}

const Output* OutputLayout::primary() const {
  const auto atOrigin = std::ranges::find_if(
      outputs, [](const Output& each) { return each.place.x == 0 && each.place.y == 0; });
  if (atOrigin != outputs.end()) return &*atOrigin;
  return outputs.empty() ? nullptr : &outputs.front();
}

std::optional<double> OutputLayout::primaryHeight() const {
  const Output* const output = primary();
  return output == nullptr ? std::nullopt : std::optional(output->place.height);
}

double OutputLayout::largestScale() const {
  if (outputs.empty()) return 1;
  return std::ranges::max_element(outputs, {}, &Output::scale)->scale;
}

std::optional<double> OutputLayout::primaryScale() const {
  const Output* const output = primary();
  return output == nullptr ? std::nullopt : std::optional(output->scale);
}

// The layout's origin is where the accessibility coordinates begin; the primary output's height
// only undoes the mirroring.
Rect OutputLayout::layoutRect(const Rect& windowRect) const {
  return {windowRect.minX(), primaryHeight().value_or(0) - windowRect.maxY(),
          windowRect.absoluteWidth(), windowRect.absoluteHeight()};
}

const Output* OutputLayout::under(const Rect& rect, std::uint32_t present) const {
  if (!std::isfinite(rect.x + rect.y + rect.width + rect.height)) return nullptr;
  const Output* best = nullptr;
  double most = 0;
  for (const Output& each : outputs) {
    const double area = areaOf(each.place.intersection(rect));
    if (area > most || (area == most && area > 0 && each.id == present)) {
      best = &each;
      most = area;
    }
  }
  return best;
}

double outputScale(const Size& pixels, const Size& points, std::optional<double> preferred) {
  if (!(pixels.width > 0 && pixels.height > 0 && points.width > 0 && points.height > 0)) return 1;
  const auto allows = [&](double scale) {
    return fits(scale, pixels.width, points.width) && fits(scale, pixels.height, points.height);
  };
  if (preferred && *preferred > 0 && allows(*preferred)) return *preferred;
  // The longer axis is the more exact.
  const double measured =
      pixels.width > pixels.height ? pixels.width / points.width : pixels.height / points.height;
  constexpr std::array steps{1,  2,  3,  4,  5,  6,  8,  10, 12,  15,
                             20, 24, 25, 30, 40, 50, 60, 75, 100, 120};
  for (const double step : steps) {
    const double scale = std::round(measured * step) / step;
    if (scale > 0 && allows(scale)) return scale;
  }
  return measured;
}

}  // namespace vellora
