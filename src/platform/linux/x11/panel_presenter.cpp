#include "platform/linux/x11/panel_presenter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <cairo-xcb.h>

#include "platform/linux/x11/x_view.h"

namespace vellora {
namespace {

// Takes down what a view draws instead of drawing it.
class PlacementRecorder final : public Surface {
 public:
  // Pictures that are in `before` too are taken over from there.
  PlacementRecorder(Point origin, const std::vector<Placement>& before)
      : origin_(origin), before_(before) {}

  void drawImage(const CaptionImage& image, const Rect& destination) override {
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

  std::vector<Placement> placements;

 private:
  static std::shared_ptr<ShownPicture> find(const std::vector<Placement>& list,
                                            const CairoImage& picture) {
    const auto found = std::ranges::find_if(list, [&](const Placement& each) {
      return each.picture->pixels.get() == picture.pixels();
    });
    return found == list.end() ? nullptr : found->picture;
  }

  Point origin_;
  const std::vector<Placement>& before_;
};

Rect scaled(const Rect& rect, double scale) {
  return {rect.x * scale, rect.y * scale, rect.width * scale, rect.height * scale};
}

// The pixels that a picture may touch: pictures are moved to whole pixels, by less than one.
PixelRect touched(const Placement& placement, double scale) {
  return nearestPixels(scaled(placement.destination, scale).insetBy(-1, -1));
}

PixelRect plateOf(const Placement& placement, double scale) {
  const Rect& place = placement.destination;
  const Size size = placement.picture->size;
  const Rect& plate = placement.picture->plate;
  const double growthX = place.width / size.width;
  const double growthY = place.height / size.height;
  return nearestPixels(scaled({place.x + plate.x * growthX, place.y + plate.y * growthY,
                               plate.width * growthX, plate.height * growthY},
                              scale));
}

// The part of `rect` within a window of that size; nothing when it has none.
std::optional<PixelRect> within(const PixelRect& rect, const PixelRect& frame) {
  const int left = std::max<int>(rect.x, 0);
  const int top = std::max<int>(rect.y, 0);
  const int right = std::min<int>(rect.right(), frame.width);
  const int bottom = std::min<int>(rect.bottom(), frame.height);
  if (left >= right || top >= bottom) return std::nullopt;
  return PixelRect{static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
                   static_cast<std::uint16_t>(right - left),
                   static_cast<std::uint16_t>(bottom - top)};
}

PixelRect boundsOf(const std::vector<PixelRect>& rects) {
  int left = 32767;
  int top = 32767;
  int right = -32768;
  int bottom = -32768;
  for (const PixelRect& rect : rects) {
    left = std::min<int>(left, rect.x);
    top = std::min<int>(top, rect.y);
    right = std::max(right, rect.right());
    bottom = std::max(bottom, rect.bottom());
  }
  return nearestPixels({static_cast<double>(left), static_cast<double>(top),
                        static_cast<double>(right - left), static_cast<double>(bottom - top)});
}

}  // namespace

PanelPresenter::PanelPresenter(std::shared_ptr<XSession> session) : session_(std::move(session)) {}

void PanelPresenter::forgetWindow() {
  shown_.clear();  // with the copies, which the server may have lost
  target_.reset();
  targetWindow_ = XCB_WINDOW_NONE;
  shownIsKnown_ = false;
  clipIsKnown_ = false;
}

void PanelPresenter::present(XView& view, Point origin, PanelWindow& window, const PixelRect& frame,
                             double scale, bool clipToPlates) {
  PlacementRecorder recorder({view.frame().minX() + origin.x, view.frame().minY() + origin.y},
                             shown_);
  view.draw(recorder);
  const Setting setting{frame, scale, clipToPlates || !window.hasAlpha()};
  const std::vector<PixelRect> damaged = damage(recorder.placements, setting);
  applyClip(window, recorder.placements, setting);
  if (!damaged.empty()) {
    if (!prepareTarget(window, frame)) return;
    paint(recorder.placements, damaged, scale);
  }
  shown_ = std::move(recorder.placements);
  shownSetting_ = setting;
  shownIsKnown_ = true;
}

std::vector<PixelRect> PanelPresenter::damage(const std::vector<Placement>& next,
                                              const Setting& setting) const {
  if (!shownIsKnown_ || setting.scale != shownSetting_.scale ||
      setting.clipToPlates != shownSetting_.clipToPlates) {
    return {PixelRect{0, 0, setting.frame.width, setting.frame.height}};
  }
  std::vector<PixelRect> rects;
  const auto add = [&](const Placement& placement) {
    const auto part = within(touched(placement, setting.scale), setting.frame);
    if (part) rects.push_back(*part);
  };
  for (std::size_t i = 0; i < std::max(shown_.size(), next.size()); ++i) {
    if (i < shown_.size() && i < next.size() && shown_[i] == next[i]) continue;
    if (i < shown_.size()) add(shown_[i]);
    if (i < next.size()) add(next[i]);
  }
  return rects;
}

void PanelPresenter::applyClip(PanelWindow& window, const std::vector<Placement>& next,
                               const Setting& setting) {
  const bool sameMode = clipIsKnown_ && setting.clipToPlates == shownSetting_.clipToPlates;
  clipIsKnown_ = true;
  if (!setting.clipToPlates) {
    if (!sameMode) window.unclip();
    return;
  }
  if (sameMode && setting.scale == shownSetting_.scale && next == shown_) return;
  std::vector<PixelRect> plates;
  plates.reserve(next.size());
  for (const Placement& placement : next) plates.push_back(plateOf(placement, setting.scale));
  window.clip(plates);
}

bool PanelPresenter::prepareTarget(PanelWindow& window, const PixelRect& frame) {
  if (!target_ || targetWindow_ != window.id() ||
      cairo_surface_status(target_.get()) != CAIRO_STATUS_SUCCESS) {
    target_.reset(cairo_xcb_surface_create(session_->connection(), window.id(), window.visual(),
                                           frame.width, frame.height));
    targetWindow_ = window.id();
    if (cairo_surface_status(target_.get()) != CAIRO_STATUS_SUCCESS) return false;
    session_->keepDrawingDevice(cairo_surface_get_device(target_.get()));
  }
  cairo_xcb_surface_set_size(target_.get(), frame.width, frame.height);
  return true;
}

void PanelPresenter::paint(const std::vector<Placement>& next,
                           const std::vector<PixelRect>& damaged, double scale) {
  const PixelRect area = boundsOf(damaged);
  const CairoSurfacePtr beside(cairo_surface_create_similar(
      target_.get(), CAIRO_CONTENT_COLOR_ALPHA, area.width, area.height));
  cairo_surface_set_device_offset(beside.get(), -area.x, -area.y);
  const CairoContextPtr drawing(cairo_create(beside.get()));
  for (const Placement& placement : next) drawCopy(drawing.get(), placement, scale);
  const CairoContextPtr context(cairo_create(target_.get()));
  cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_NONE);
  for (const PixelRect& rect : damaged) {
    cairo_rectangle(context.get(), rect.x, rect.y, rect.width, rect.height);
  }
  cairo_clip(context.get());
  cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context.get(), beside.get(), 0, 0);
  cairo_paint(context.get());
  cairo_surface_flush(target_.get());
}

void PanelPresenter::drawCopy(cairo_t* context, const Placement& placement, double scale) {
  ShownPicture& picture = *placement.picture;
  const int width = cairo_image_surface_get_width(picture.pixels.get());
  const int height = cairo_image_surface_get_height(picture.pixels.get());
  if (!picture.copy) {
    picture.copy.reset(
        cairo_surface_create_similar(target_.get(), CAIRO_CONTENT_COLOR_ALPHA, width, height));
    const CairoContextPtr upload(cairo_create(picture.copy.get()));
    cairo_set_operator(upload.get(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(upload.get(), picture.pixels.get(), 0, 0);
    cairo_paint(upload.get());
  }
  drawPicture(context, picture.copy.get(),
              {static_cast<double>(width), static_cast<double>(height)},
              scaled(placement.destination, scale));
}

}  // namespace vellora
