#include "platform/linux/accessibility/content_placement.h"

#include <cstdint>

namespace vellora {

namespace {

// How much larger a scaled window is at least. What a window manager puts around one is less.
constexpr double leastScale = 1.2;

bool isInside(const AccessibleExtents& inner, const AccessibleExtents& outer) {
  constexpr std::int64_t rounding = 2;
  const auto right = [](const AccessibleExtents& one) { return std::int64_t{one.x} + one.width; };
  const auto bottom = [](const AccessibleExtents& one) { return std::int64_t{one.y} + one.height; };
  return right(inner) <= right(outer) + rounding && bottom(inner) <= bottom(outer) + rounding;
}

}  // namespace

ContentPlacement::ContentPlacement(const AccessibleExtents& frame,
                                   const std::optional<AccessibleExtents>& page,
                                   const PlayerWindow& window,
                                   const std::optional<SurfacePlacement>& surface)
    : placement_(frame, window), surface_(surface), window_(placement_.place(frame)) {
  if (surface_) {
    window_ = surface_->window();
    if (page && !isInside(*page, frame) && window.scale > 1) pixelsPerPoint_ = window.scale;
    return;
  }
  if (!window.clientArea || !(window.scale > 0)) return;
  const Rect area{window.clientArea->x / window.scale, window.clientArea->y / window.scale,
                  window.clientArea->width / window.scale,
                  window.clientArea->height / window.scale};
  if (area.width > window_.width * leastScale && area.height > window_.height * leastScale) {
    window_ = area;
  }
  const bool isFrameLogical = window.clientArea->width > frame.width * leastScale;
  if (isFrameLogical && page && !isInside(*page, frame)) pixelsPerPoint_ = window.scale;
}

Rect ContentPlacement::place(const AccessibleExtents& extents) const {
  const double pixels = pixelsPerPoint_.value_or(1);
  const Rect told{extents.x / pixels, extents.y / pixels, extents.width / pixels,
                  extents.height / pixels};
  if (surface_) return surface_->place(told);
  return pixelsPerPoint_ ? told : placement_.place(extents);
}

}  // namespace vellora
