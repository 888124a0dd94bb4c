#include "platform/linux/x11/panel_presenter.h"

#include <utility>

#include <cairo-xcb.h>

namespace vellora {
namespace {

PixelRect plateOf(const Placement& placement, double scale) {
  const Rect& place = placement.destination;
  const Size size = placement.picture->size;
  const Rect& plate = placement.picture->plate;
  const double growthX = place.width / size.width;
  const double growthY = place.height / size.height;
  return nearestPixels(pixelsOf({place.x + plate.x * growthX, place.y + plate.y * growthY,
                                 plate.width * growthX, plate.height * growthY},
                                scale));
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

void PanelPresenter::present(HostedView& view, Point origin, PanelWindow& window,
                             const PixelRect& frame, double scale, bool clipToPlates) {
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
  return differenceBetween(shown_, next, setting.scale, setting.frame);
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
              pixelsOf(placement.destination, scale));
}

}  // namespace vellora
