#include "platform/linux/wayland/panel/panel_content.h"

#include <algorithm>
#include <utility>

namespace vellora {
namespace {

// The part of `rect`, which counts from the panel's top left, that the surface shows.
std::optional<PixelRect> inSurface(const PixelRect& rect, const PanelContent& content) {
  const PixelRect& shown = content.visible;
  const int left = std::max<int>(rect.x + content.frameX, shown.x);
  const int top = std::max<int>(rect.y + content.frameY, shown.y);
  const int right = std::min(rect.right() + content.frameX, shown.right());
  const int bottom = std::min(rect.bottom() + content.frameY, shown.bottom());
  if (left >= right || top >= bottom) return std::nullopt;
  return PixelRect{static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
                   static_cast<std::uint16_t>(right - left),
                   static_cast<std::uint16_t>(bottom - top)};
}

// Where `before` and `after`, which are shown in the setting of `content`, differ.
void addChanges(std::vector<PixelRect>& changes, const std::vector<Placement>& before,
                const std::vector<Placement>& after, const PanelContent& content) {
  const auto reach = [](int pixels) {
    return static_cast<std::uint16_t>(std::clamp(pixels, 1, 32767));
  };
  const PixelRect frame{0, 0, reach(content.visible.right() - content.frameX),
                        reach(content.visible.bottom() - content.frameY)};
  for (const PixelRect& rect : differenceBetween(before, after, content.scale, frame)) {
    if (const auto part = inSurface(rect, content)) changes.push_back(*part);
  }
}

}  // namespace

PanelContent::PanelContent(std::vector<Placement> list, const Standing& standing)
    : placements(std::move(list)),
      scale(standing.scale),
      frameX(standing.frameX),
      frameY(standing.frameY),
      visible(standing.visible) {}

std::vector<PixelRect> changesBetween(const PanelContent& before, const PanelContent& after) {
  std::vector<PixelRect> changes;
  const bool sameSetting = before.scale == after.scale && before.frameX == after.frameX &&
                           before.frameY == after.frameY && before.visible == after.visible;
  if (sameSetting) {
    addChanges(changes, before.placements, after.placements, after);
  } else {
    addChanges(changes, before.placements, {}, before);
    addChanges(changes, {}, after.placements, after);
  }
  return changes;
}

void paintContent(cairo_surface_t* surface, const PanelContent& content,
                  const std::vector<PixelRect>& pixels) {
  if (pixels.empty()) return;
  const CairoContextPtr context(cairo_create(surface));
  cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_NONE);
  for (const PixelRect& rect : pixels) {
    cairo_rectangle(context.get(), rect.x, rect.y, rect.width, rect.height);
  }
  cairo_clip(context.get());
  cairo_set_operator(context.get(), CAIRO_OPERATOR_CLEAR);
  cairo_paint(context.get());
  cairo_set_operator(context.get(), CAIRO_OPERATOR_OVER);
  cairo_rectangle(context.get(), content.visible.x, content.visible.y, content.visible.width,
                  content.visible.height);
  cairo_clip(context.get());
  cairo_translate(context.get(), content.frameX, content.frameY);
  for (const Placement& placement : content.placements) {
    cairo_surface_t* const picture = placement.picture->pixels.get();
    drawPicture(context.get(), picture,
                {static_cast<double>(cairo_image_surface_get_width(picture)),
                 static_cast<double>(cairo_image_surface_get_height(picture))},
                pixelsOf(placement.destination, content.scale));
  }
  cairo_surface_flush(surface);
}

}  // namespace vellora
