#include "platform/linux/window_system/placement.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vellora {
namespace {

std::shared_ptr<ShownPicture> find(const std::vector<Placement>& list, const CairoImage& picture) {
  const auto found = std::ranges::find_if(
      list, [&](const Placement& each) { return each.picture->pixels.get() == picture.pixels(); });
  return found == list.end() ? nullptr : found->picture;
}

// The pixels that a picture may touch: pictures are moved to whole pixels, by less than one.
PixelRect touched(const Placement& placement, double scale) {
  return nearestPixels(pixelsOf(placement.destination, scale).insetBy(-1, -1));
}

}  // namespace

void PlacementRecorder::drawImage(const CaptionImage& image, const Rect& destination) {
  const auto& picture = static_cast<const CairoImage&>(image);
  const Rect place = destination.standardized().offsetBy(origin_.x, origin_.y);
  if (!std::isfinite(place.x + place.y + place.width + place.height) || place.isEmpty()) return;
  auto shown = find(before_, picture);
  if (!shown) shown = find(placements, picture);
  if (!shown) {
    shown = std::make_shared<ShownPicture>();
    shown->pixels.reset(cairo_surface_reference(picture.pixels()));
    shown->size = picture.size();
    shown->plate = picture.plate();
  }
  placements.push_back({std::move(shown), place});
}

Rect pixelsOf(const Rect& points, double scale) {
  return {points.x * scale, points.y * scale, points.width * scale, points.height * scale};
}

std::vector<PixelRect> differenceBetween(const std::vector<Placement>& before,
                                         const std::vector<Placement>& after, double scale,
                                         const PixelRect& frame) {
  std::vector<PixelRect> rects;
  const auto add = [&](const Placement& placement) {
    const auto part = partWithin(touched(placement, scale), frame);
    if (part) rects.push_back(*part);
  };
  for (std::size_t i = 0; i < std::max(before.size(), after.size()); ++i) {
    if (i < before.size() && i < after.size() && before[i] == after[i]) continue;
    if (i < before.size()) add(before[i]);
    if (i < after.size()) add(after[i]);
  }
  return rects;
}

}  // namespace vellora
