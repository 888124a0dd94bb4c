#include <algorithm>
#include <cmath>
#include <optional>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "render/geometry.h"

namespace vellora {

namespace {

// Numbers that come in rectangles, and every other.
double coordinate(FuzzInput& input) {
  if (input.flag()) return input.number();
  return static_cast<double>(input.take<std::int16_t>()) / 8;
}
Rect rectangle(FuzzInput& input) { return rectangleOf(input, coordinate); }

bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }
bool same(const Rect& a, const Rect& b) {
  return same(a.x, b.x) && same(a.y, b.y) && same(a.width, b.width) && same(a.height, b.height);
}

bool isOrdinary(const Rect& rect) {
  return std::isfinite(rect.x) && std::isfinite(rect.y) && rect.width > 0 && rect.height > 0 &&
         std::isfinite(rect.x + rect.width) && std::isfinite(rect.y + rect.height);
}

// The caption's place worked out by hand, for rectangles of positive size.
std::optional<Rect> plainLabel(const Rect& row, const std::optional<Rect>& next, const Rect& view,
                               double height, double offset) {
  const double right = view.x + view.width;
  const double bottom = view.y + view.height;
  const double middleX = row.x + row.width / 2;
  const double middleY = row.y + row.height / 2;
  if (middleX < view.x || middleX >= right || middleY < view.y || middleY >= bottom) return {};
  if (row.width <= 40) return {};
  const double top = offset + (row.y + row.height) + 2;
  const double limit = next && next->y < bottom ? next->y : bottom;
  if (!(height <= limit - top - 3)) return {};
  const double left = row.x > view.x ? row.x : view.x;
  const double width = right - left - 24;
  if (width < 80) return {};
  const double bottomEdge = height < 0 ? top : top + height;
  const double topEdge = height < 0 ? top + height : top;
  if (!(topEdge >= view.y && bottomEdge <= bottom && left + 2 >= view.x &&
        left + 2 + width <= right)) {
    return {};
  }
  return Rect{left + 2, top, width, height};
}

double plainSoftness(const Rect& row, const Rect& view) {
  const bool meet = row.x <= view.x + view.width && view.x <= row.x + row.width &&
                    row.y <= view.y + view.height && view.y <= row.y + row.height;
  if (!meet) return 0;
  const double distance = std::fabs(row.y - (view.y + view.height * 0.35)) / view.height;
  const double ramp = (distance - 0.055) / 0.14;
  if (!(ramp >= 0)) return 0;
  if (ramp >= 1) return 1;
  return std::round(ramp * 8) * 0.125;
}

}  // namespace

void fuzzGeometry(std::string_view bytes) {
  FuzzInput input(bytes);
  const Rect row = rectangle(input);
  const Rect viewport = rectangle(input);
  std::optional<Rect> next;
  if (input.flag()) next = rectangle(input);
  const double height = coordinate(input);
  const double offset = coordinate(input);

  const auto label = OverlayGeometry::labelRect(row, next, viewport, height, offset);
  if (label) {
    require(viewport.contains(*label), "a caption inside the viewport");
    require(label->width >= 80 && !std::isnan(label->x + label->y), "a caption's place");
    require(!std::isnan(label->height), "a caption's height");
  }
  const double softness = OverlayFocus::softness(row, viewport);
  require(softness >= 0 && softness <= 1 && softness * 8 == std::floor(softness * 8),
          "softness in eighths");
  if (isOrdinary(row) && isOrdinary(viewport)) {
    require(softness == plainSoftness(row, viewport), "the softness by hand");
    if ((!next || isOrdinary(*next)) && std::isfinite(height) && height != 0) {
      const auto plain = plainLabel(row, next, viewport, height, offset);
      require(label.has_value() == plain.has_value(), "whether there is room");
      if (label) require(same(*label, *plain), "the place by hand");
    }
  }

  const Rect there = OverlayGeometry::appKitRect(row, offset);
  require(std::isnan(there.width) || there.width >= 0, "a width");
  if (isOrdinary(row)) {
    require(same(there.x, row.x) && same(there.width, row.width) &&
                same(there.height, row.height) && same(there.y, offset - (row.y + row.height)),
            "the place from below");
  }
  const Rect common = row.intersection(viewport);
  require(row.intersects(viewport) == !common.isNull(), "rectangles that meet");
  if (isOrdinary(row) && isOrdinary(viewport) && !common.isNull()) {
    require(common.x == std::max(row.x, viewport.x) && common.y == std::max(row.y, viewport.y),
            "where the common part begins");
  }
}

}  // namespace vellora
