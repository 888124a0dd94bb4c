#include "platform/linux/wayland/panel/wayland_panel.h"

#include <utility>

#include "platform/linux/glib/event_source.h"

namespace vellora {

WaylandPanel::WaylandPanel(std::shared_ptr<WaylandSession> session)
    : session_(std::move(session)), canvas_([this] {
        if (isDue_) displayNow();
      }) {
  session_->addListener(*this);
}

WaylandPanel::~WaylandPanel() {
  if (view_ != nullptr) view_->setHost(nullptr);
  session_->removeListener(*this);
  surface_.reset();
  canvas_.clear();
  session_->flush();
}

void WaylandPanel::configure(NativeView& content) {
  if (view_ != nullptr) view_->setHost(nullptr);
  view_ = static_cast<HostedView*>(&content);
  view_->setHost(this);
  displaySoon();
}

void WaylandPanel::setFrame(const Rect& frame) {
  if (frame == frame_) return;
  frame_ = frame;
  displaySoon();
}

// Whoever orders the panel front has said all that it is to show, and may next do something that
// takes its time, such as bringing a file to the disk. A drawing that is due does not wait for it.
void WaylandPanel::orderFrontRegardless() {
  session_->dispatch();
  if (view_ == nullptr) return;
  if (!std::exchange(shown_, true)) {
    isDue_ = true;
    displayNow();
  } else if (drawing_) {
    displayNow();
  }
}

void WaylandPanel::orderOut() {
  if (!std::exchange(shown_, false)) return;
  drawing_.reset();
  closedOn_.reset();
  if (!session_->present()) return;
  dropSurface();
  session_->flush();
}

bool WaylandPanel::ignoresMouseEvents() const {
  return view_ != nullptr && (!surface_ || surface_->passesClicks());
}

// Its pixels have an alpha channel, and no part of it is called opaque.
bool WaylandPanel::isOpaque() const { return view_ == nullptr; }

std::optional<double> WaylandPanel::hostScale() {
  if (const auto standing = wantedStanding()) return standing->scale;
  return session_->layout().primaryScale();
}

void WaylandPanel::displaySoon() {
  if (!shown_) return;
  isDue_ = true;
  if (drawing_) return;
  constexpr int whereToolkitsRedraw = G_PRIORITY_HIGH_IDLE + 20;
  drawing_ = attachSource(
      g_idle_source_new(), [this] { displayNow(); }, whereToolkitsRedraw);
}

std::optional<Standing> WaylandPanel::wantedStanding() const {
  const OutputLayout& layout = session_->layout();
  const Rect place = layout.layoutRect(frame_);
  const Output* const under = layout.under(place, surface_ ? surface_->output() : 0);
  if (under == nullptr || under->id == closedOn_) return std::nullopt;
  Output output = *under;
  if (surface_ && surface_->output() == output.id && preferredScale_) {
    output.scale =
        outputScale(output.pixels, {output.place.width, output.place.height}, preferredScale_);
  }
  return standingOn(output, place);
}

void WaylandPanel::displayNow() {
  drawing_.reset();
  if (!shown_ || !session_->present()) return;
  const auto standing = wantedStanding();
  if (surface_ && (!standing || standing->output != surface_->output())) dropSurface();
  if (standing && !surface_ && !farewell_) {
    wl_output* const output = session_->outputs().handle(standing->output);
    LayerSurfaceListener& listener = *this;
    surface_ = std::make_unique<LayerSurface>(session_, output, *standing, listener);
  }
  if (standing && surface_ && surface_->mayCommit()) show(*standing);
  session_->flush();
}

void WaylandPanel::show(const Standing& standing) {
  isDue_ = false;
  const std::vector<Placement> none;
  PlacementRecorder recorder({view_->frame().minX(), view_->frame().minY()},
                             content_ ? content_->placements : none);
  view_->draw(recorder);
  PanelContent content(std::move(recorder.placements), standing);
  const Standing& last = surface_->standing();
  const bool isSameSize = content_ && last.pixelWidth == standing.pixelWidth &&
                          last.pixelHeight == standing.pixelHeight;
  const std::vector<PixelRect> changes =
      isSameSize ? changesBetween(*content_, content) : std::vector{standing.surfacePixels()};
  if (changes.empty()) {
    if (!(last == standing)) surface_->commit(standing, nullptr, {});
  } else {
    ShmBuffer* const buffer = canvas_.draw(session_->memory(), content, standing);
    if (buffer == nullptr) {
      isDue_ = true;  // when one is given back
      return;
    }
    buffer->noteGiven();
    surface_->commit(standing, buffer->handle(), changes);
    canvas_.dropOld();
  }
  content_ = std::move(content);
}

void WaylandPanel::dropSurface() {
  if (!std::exchange(surface_, nullptr)) return;
  canvas_.clear();
  content_.reset();
  preferredScale_.reset();
  static constexpr wl_callback_listener listener{
      .done = [](void* data, wl_callback*, std::uint32_t) {
        auto& self = *static_cast<WaylandPanel*>(data);
        self.farewell_.reset();
        if (self.isDue_) self.displayNow();
      }};
  farewell_.reset(wl_display_sync(session_->display()));
  wl_callback_add_listener(farewell_.get(), &listener, this);
  isDue_ = true;
}

void WaylandPanel::surfaceReady() {
  if (isDue_) displayNow();
}

void WaylandPanel::surfaceClosed() {
  closedOn_ = surface_->output();
  dropSurface();
  displaySoon();
}

void WaylandPanel::surfaceScalePreferred(double scale) {
  preferredScale_ = scale;
  displaySoon();
}

void WaylandPanel::outputsChanged() {
  closedOn_.reset();
  displaySoon();
}

void WaylandPanel::sessionLost() {
  drawing_.reset();
  farewell_.reset();
  surface_.reset();
  canvas_.clear();
  content_.reset();
}

}  // namespace vellora
