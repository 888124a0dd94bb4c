#include "platform/linux/x11/x_panel.h"

#include <algorithm>
#include <utility>

#include "platform/linux/glib/event_source.h"
#include "platform/linux/x11/screen_metrics.h"

namespace vellora {
namespace {

// A frame with a longer side than this many pixels may be a player's mistake, and a window of that
// size a burden on the server and the compositor.
constexpr int longSide = 8192;

std::optional<PixelRect> allScreens(const XSession& session) {
  xcb_connection_t* const c = session.connection();
  const XcbReply<xcb_get_geometry_reply_t> root(
      xcb_get_geometry_reply(c, xcb_get_geometry(c, session.root()), nullptr));
  if (!root) return std::nullopt;
  return PixelRect{0, 0, root->width, root->height};
}

// The part of a very large frame that is on the screens; another frame as it is.
PixelRect withinScreens(const PixelRect& frame, const XSession& session) {
  if (frame.width <= longSide && frame.height <= longSide) return frame;
  const auto screens = allScreens(session);
  if (!screens) return frame;
  const double left = std::clamp<double>(frame.x, 0, screens->right());
  const double top = std::clamp<double>(frame.y, 0, screens->bottom());
  return nearestPixels({left, top, std::clamp<double>(frame.right(), left, screens->right()) - left,
                        std::clamp<double>(frame.bottom(), top, screens->bottom()) - top});
}

double monotonicSeconds() { return static_cast<double>(g_get_monotonic_time()) / 1e6; }

}  // namespace

XPanel::XPanel(std::shared_ptr<XSession> session, std::function<double()> clock)
    : session_(std::move(session)),
      clock_(clock ? std::move(clock) : monotonicSeconds),
      topLevels_(*session_),
      presenter_(session_) {
  session_->addListener(*this);
}

XPanel::~XPanel() {
  if (view_ != nullptr) view_->setHost(nullptr);
  session_->removeListener(*this);
}

void XPanel::configure(NativeView& content) {
  if (view_ != nullptr) view_->setHost(nullptr);
  view_ = static_cast<HostedView*>(&content);
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
  if (!window_->isMade()) return dropWindow();
  window_->lower();
  window_->applySettings();
  wanted_ = {};
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
  if (pixels == wanted_) return;
  wanted_ = pixels;
  placed_ = withinScreens(pixels, *session_);
  window_->place(placed_);
  displaySoon();
}

// Whoever orders the panel front has said all that it is to show, and may next do something that
// takes its time, such as bringing a file to the disk. A drawing that is due does not wait for it.
void XPanel::orderFrontRegardless() {
  session_->dispatch();
  if (onScreen() && drawing_) displayNow();
  if (view_ == nullptr || onScreen()) return;
  shown_ = true;
  if (session_->present()) show();
}

// A hidden panel lies below everything, so that it comes up there, and never over a screen locker,
// when the window that it was to lie above is gone by then.
void XPanel::show() {
  if (!window_) makeWindow();
  if (!window_) return;  // the next call tries again
  guard_.reset();
  topLevels_.watch(true);
  takePlace();
  if (!window_->map()) return dropWindow();
  topLevels_.noteMapped(window_->id());
  presenter_.invalidate();
  displayNow();
}

void XPanel::orderOut() {
  if (!std::exchange(shown_, false)) return;
  drawing_.reset();
  if (!session_->present()) return;
  if (window_) {
    window_->unmap();
    window_->lower();
  }
  topLevels_.watch(false);
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
  constexpr int whereToolkitsRedraw = G_PRIORITY_HIGH_IDLE + 20;
  drawing_ = attachSource(
      g_idle_source_new(), [this] { displayNow(); }, whereToolkitsRedraw);
}

void XPanel::displayNow() {
  drawing_.reset();
  if (!onScreen() || !session_->present()) return;
  const bool composited = compositor_ && compositor_->owner() != XCB_WINDOW_NONE;
  const double scale = placedScale_.value_or(1);
  const Point origin{(wanted_.x - placed_.x) / scale, (wanted_.y - placed_.y) / scale};
  presenter_.present(*view_, origin, *window_, placed_, scale, !composited);
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
  } else if (shown_) {
    if (type == XCB_UNMAP_NOTIFY) {
      guard_.forget(eventAs<xcb_unmap_notify_event_t>(event).window);
    } else if (type == XCB_CONFIGURE_NOTIFY) {
      guard_.noteMoved(eventAs<xcb_configure_notify_event_t>(event).window, clock_());
    }
    topLevels_.handleEvent(event);
  }
}

void XPanel::endTurn() {
  if (!onScreen()) return;
  if (session_->metrics().scale() != placedScale_) {
    place();
    displaySoon();
  }
  if (topLevels_.changed()) takePlace();
}

// In one step. A window that is given way to from now on changes where that place is.
void XPanel::takePlace() {
  const std::vector<TopLevel> windows = topLevels_.read();
  const xcb_window_t base = topLevels_.active();
  const double now = clock_();
  const auto givesWay = [&](std::uint32_t window) { return guard_.givesWayTo(window, now); };
  const auto isFinal = [&](const Restacking& move) {
    return move.cause == base || givesWay(move.cause) || guard_.answers(move.cause, now);
  };
  std::optional<Restacking> move;
  do {
    move = restackingOf(window_->id(), windows, base, givesWay);
  } while (move && !isFinal(*move));
  if (!move) return;
  if (move->sibling == XCB_WINDOW_NONE) {
    window_->lower();
  } else {
    window_->raiseAbove(move->sibling);
  }
  topLevels_.noteRestacked(window_->id(), move->sibling);
  xcb_flush(session_->connection());
}

void XPanel::sessionLost() {
  dropWindow();
  compositor_.reset();
}

}  // namespace vellora
