#include "platform/linux/x11/x_panel.h"

#include <algorithm>
#include <utility>

#include "platform/linux/x11/screen_metrics.h"

namespace vellora {

XPanel::XPanel(std::shared_ptr<XSession> session)
    : session_(std::move(session)), presenter_(session_) {
  session_->addListener(*this);
}

XPanel::~XPanel() {
  if (view_ != nullptr) view_->setHost(nullptr);
  session_->removeListener(*this);
}

void XPanel::configure(NativeView& content) {
  if (view_ != nullptr) view_->setHost(nullptr);
  view_ = static_cast<XView*>(&content);
  view_->setHost(this);
  session_->dispatch();
  if (!session_->present()) return;
  if (window_) {
    window_->applySettings();
    presenter_.forgetWindow();
    displaySoon();
  } else {
    makeWindow();
  }
}

void XPanel::makeWindow() {
  if (!compositor_) compositor_.emplace(*session_, session_->atoms().compositorOwner);
  window_ = std::make_unique<PanelWindow>(session_);
  window_->applySettings();
  placed_ = {};
  placedScale_.reset();
  place();
}

void XPanel::dropWindow() {
  drawing_.reset();
  presenter_.forgetWindow();
  window_.reset();
}

void XPanel::setFrame(const Rect& frame) {
  frame_ = frame;
  place();
}

// X counts from the top left of all screens together, which is where the accessibility coordinates
// begin too; the primary screen's height only undoes the mirroring.
void XPanel::place() {
  if (!window_ || !session_->present()) return;
  const auto scale = session_->metrics().scale();
  if (!scale) return;
  const double height = session_->metrics().primaryHeight().value_or(0);
  const PixelRect pixels =
      nearestPixels({frame_.minX() * *scale, (height - frame_.maxY()) * *scale,
                     frame_.absoluteWidth() * *scale, frame_.absoluteHeight() * *scale});
  placedScale_ = scale;
  if (pixels == placed_) return;
  placed_ = pixels;
  window_->place(pixels);
  displaySoon();
}

void XPanel::orderFrontRegardless() {
  session_->dispatch();
  if (view_ == nullptr || onScreen()) return;
  shown_ = true;
  if (session_->present()) show();
}

void XPanel::show() {
  if (!window_) makeWindow();
  guard_.reset();
  restacked_.clear();
  session_->watchTopLevels(true);
  window_->raise();
  window_->map();
  presenter_.invalidate();
  displayNow();
}

void XPanel::orderOut() {
  if (!std::exchange(shown_, false)) return;
  drawing_.reset();
  if (!window_ || !session_->present()) return;
  window_->unmap();
  session_->watchTopLevels(false);
  xcb_flush(session_->connection());
}

bool XPanel::ignoresMouseEvents() const {
  if (!session_->present()) return view_ != nullptr;
  return window_ && window_->passesClicks();
}

bool XPanel::isOpaque() const {
  if (!session_->present()) return view_ == nullptr;
  return !window_ || window_->isOpaque();
}

std::optional<double> XPanel::hostScale() {
  return window_ ? session_->metrics().scale() : std::nullopt;
}

void XPanel::displaySoon() {
  if (!onScreen() || drawing_) return;
  drawing_.reset(g_idle_source_new());
  g_source_set_priority(drawing_.get(), G_PRIORITY_HIGH_IDLE + 20);  // where toolkits redraw
  g_source_set_name(drawing_.get(), "Draw the panel");
  const GSourceFunc draw = [](gpointer panel) -> gboolean {
    static_cast<XPanel*>(panel)->displayNow();
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(drawing_.get(), draw, this, nullptr);
  g_source_attach(drawing_.get(), nullptr);
}

void XPanel::displayNow() {
  drawing_.reset();
  if (!onScreen() || !session_->present()) return;
  const bool composited = compositor_ && compositor_->owner() != XCB_WINDOW_NONE;
  presenter_.present(*view_, *window_, placed_, placedScale_.value_or(1), !composited);
  xcb_flush(session_->connection());
}

void XPanel::handleEvent(const xcb_generic_event_t& event) {
  if (compositor_ && compositor_->handleEvent(event)) displaySoon();
  if (!window_) return;
  const std::uint8_t type = eventType(event);
  if (type == XCB_EXPOSE && eventAs<xcb_expose_event_t>(event).window == window_->id()) {
    presenter_.invalidate();
    displaySoon();
  } else if (type == XCB_DESTROY_NOTIFY &&
             eventAs<xcb_destroy_notify_event_t>(event).window == window_->id()) {
    window_->release();
    dropWindow();
  } else {
    noteRestacking(event);
  }
}

void XPanel::noteRestacking(const xcb_generic_event_t& event) {
  xcb_window_t window = XCB_WINDOW_NONE;
  switch (eventType(event)) {
    case XCB_MAP_NOTIFY:
      window = eventAs<xcb_map_notify_event_t>(event).window;
      break;
    case XCB_CONFIGURE_NOTIFY:
      window = eventAs<xcb_configure_notify_event_t>(event).window;
      break;
    case XCB_CIRCULATE_NOTIFY:
      window = eventAs<xcb_circulate_notify_event_t>(event).window;
      break;
    case XCB_UNMAP_NOTIFY:
      guard_.forget(eventAs<xcb_unmap_notify_event_t>(event).window);
      return;
    default:
      return;
  }
  if (window != window_->id()) restacked_.insert(window);
}

void XPanel::endTurn() {
  if (!onScreen()) return;
  if (session_->metrics().scale() != placedScale_) {
    place();
    displaySoon();
  }
  if (!restacked_.empty()) returnToFront();
}

// Once a turn, and above the highest of those that moved and are not given way to, no further.
void XPanel::returnToFront() {
  const std::set<xcb_window_t> restacked = std::exchange(restacked_, {});
  xcb_connection_t* const c = session_->connection();
  const XcbReply<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(c, xcb_query_tree(c, session_->root()), nullptr));
  if (!tree) return;
  const xcb_window_t* const first = xcb_query_tree_children(tree.get());
  const xcb_window_t* const last = first + xcb_query_tree_children_length(tree.get());
  const xcb_window_t* const own = std::find(first, last, window_->id());
  if (own == last) return;
  const double now = static_cast<double>(g_get_monotonic_time()) / 1e6;
  xcb_window_t highest = XCB_WINDOW_NONE;
  for (const xcb_window_t* each = own + 1; each != last; ++each) {
    if (restacked.contains(*each) && guard_.answers(*each, now)) highest = *each;
  }
  if (highest == XCB_WINDOW_NONE) return;
  window_->raiseAbove(highest);
  xcb_flush(c);
}

void XPanel::sessionLost() {
  dropWindow();
  compositor_.reset();
}

}  // namespace vellora
