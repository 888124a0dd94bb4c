#include "platform/linux/accessibility/surface_placement.h"

#include <algorithm>
#include <cmath>

namespace vellora {

namespace {

// Programs round to whole points, and window systems may not.
constexpr double rounding = 1;

bool fits(const AccessibleExtents& extents, const Rect& rect) {
  return std::abs(extents.width - rect.width) <= rounding &&
         std::abs(extents.height - rect.height) <= rounding;
}

// How much larger a frame is than its window's content at most: no shadow is broader.
constexpr double broadestShadow = 200;

bool mayHaveShadowAround(const AccessibleExtents& frame, const Rect& content) {
  const double wider = frame.width - content.width;
  const double higher = frame.height - content.height;
  return wider >= 0 && higher >= 0 && wider <= broadestShadow && higher <= broadestShadow;
}

}  // namespace

std::optional<SurfacePlacement> SurfacePlacement::find(const AccessibleExtents& frame,
                                                       const std::vector<SurfacePlace>& surfaces) {
  if (!surfaces.empty() && surfaces.front().serversPixels) return onScreen(frame, surfaces);
  const auto choose = [&](auto isIt) -> std::optional<SurfacePlacement> {
    const auto found = std::ranges::find_if(surfaces, isIt);
    if (found == surfaces.end()) return std::nullopt;
    return SurfacePlacement(frame, *found);
  };
  if (auto exact = choose([&](const SurfacePlace& place) {
        return fits(frame, place.content) || (place.surface && fits(frame, *place.surface));
      })) {
    return exact;
  }
  if (auto larger = choose(
          [&](const SurfacePlace& place) { return mayHaveShadowAround(frame, place.content); })) {
    return larger;
  }
  // While a window is resized, the two may tell of different moments.
  if (surfaces.size() == 1) return SurfacePlacement(frame, surfaces.front());
  return std::nullopt;
}

// Widths tell: what a title bar adds to the height may be counted in either measure.
SurfacePlacement SurfacePlacement::onScreen(const AccessibleExtents& frame,
                                            const std::vector<SurfacePlace>& surfaces) {
  SurfacePlacement placement(frame, surfaces.front());
  placement.origin_ = {};
  placement.lacksInset_ = false;
  placement.isOnScreen_ = true;
  for (const SurfacePlace& surface : surfaces) {
    const double pixels = surface.serversPixels.value_or(1);
    const auto isWide = [&](double width) {
      return std::abs(frame.width - width) <= rounding * pixels;
    };
    if (isWide(surface.content.width)) break;
    if (!isWide(surface.content.width * pixels)) continue;
    placement.content_ = surface.content;
    placement.pixelsPerPoint_ = pixels;
    break;
  }
  return placement;
}

Rect SurfacePlacement::place(const Rect& extents) const {
  const double pixels = pixelsPerPoint_;
  return Rect{extents.x / pixels, extents.y / pixels, extents.width / pixels,
              extents.height / pixels}
      .offsetBy(origin_.x, origin_.y);
}

SurfacePlacement::SurfacePlacement(const AccessibleExtents& frame, const SurfacePlace& surface)
    : frame_(frame),
      content_(surface.content),
      origin_{content_.x - frame.x, content_.y - frame.y} {
  if (fits(frame, content_)) return;
  if (surface.surface && fits(frame, *surface.surface)) {
    origin_ = {surface.surface->x - frame.x, surface.surface->y - frame.y};
  } else if (mayHaveShadowAround(frame, content_)) {
    lacksInset_ = true;
    origin_.x -= std::round((frame.width - content_.width) / 2);
    origin_.y -= std::round((frame.height - content_.height) / 2);
  }
}

bool SurfacePlacement::takeInset(const std::vector<AccessibleExtents>& elements) {
  std::optional<Rect> all;
  const Rect frame = rectOf(frame_);
  for (const AccessibleExtents& element : elements) {
    const Rect box = rectOf(element);
    if (element.width <= 0 || element.height <= 0 || !frame.contains(box)) continue;
    if (!all) {
      all = box;
      continue;
    }
    const double x = std::min(all->x, box.x);
    const double y = std::min(all->y, box.y);
    all = Rect{x, y, std::max(all->maxX(), box.maxX()) - x, std::max(all->maxY(), box.maxY()) - y};
  }
  if (!all || std::abs(all->width - content_.width) > rounding ||
      std::abs(all->height - content_.height) > rounding) {
    return false;
  }
  origin_ = {content_.x - all->x, content_.y - all->y};
  lacksInset_ = false;
  return true;
}

}  // namespace vellora
