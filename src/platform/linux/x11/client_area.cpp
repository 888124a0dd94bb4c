#include "platform/linux/x11/client_area.h"

#include <algorithm>
#include <utility>

namespace vellora {
namespace {

// More than any window manager wraps around a window.
constexpr std::size_t mostFrames = 16;

}  // namespace

ClientAreaQuestion::ClientAreaQuestion(const XSession& session, xcb_window_t window)
    : connection_(session.connection()),
      geometry_(xcb_get_geometry(connection_, window)),
      origin_(xcb_translate_coordinates(connection_, window, session.root(), 0, 0)),
      shadow_(connection_, window, session.atoms().gtkFrameExtents) {}

std::optional<Rect> ClientAreaQuestion::take() {
  const XcbReply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection_, geometry_, nullptr));
  const XcbReply<xcb_translate_coordinates_reply_t> origin(
      xcb_translate_coordinates_reply(connection_, origin_, nullptr));
  const auto shadow = shadow_.takeNumbers();
  if (!geometry || !origin) return std::nullopt;
  const Rect window{static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y),
                    static_cast<double>(geometry->width), static_cast<double>(geometry->height)};
  if (shadow.size() != 4) return window;
  const double left = shadow[0], right = shadow[1], top = shadow[2], bottom = shadow[3];
  if (left + right >= window.width || top + bottom >= window.height) return window;
  return Rect{window.x + left, window.y + top, window.width - left - right,
              window.height - top - bottom};
}

void ClientArea::follow(xcb_window_t window) {
  if (window == window_) return;
  hear(XCB_EVENT_MASK_NO_EVENT);
  forget();
  window_ = window;
}

void ClientArea::forget() {
  window_ = XCB_WINDOW_NONE;
  frames_.clear();
  framesKnown_ = false;
  areaKnown_ = false;
  area_.reset();
}

void ClientArea::handleEvent(const xcb_generic_event_t& event) {
  switch (eventType(event)) {
    case XCB_CONFIGURE_NOTIFY:
      if (isFollowed(eventAs<xcb_configure_notify_event_t>(event).window)) areaKnown_ = false;
      return;
    case XCB_PROPERTY_NOTIFY: {
      const auto& notice = eventAs<xcb_property_notify_event_t>(event);
      const bool isShadow = notice.atom == session_.atoms().gtkFrameExtents;
      if (isShadow && notice.window == window_) areaKnown_ = false;
      return;
    }
    case XCB_REPARENT_NOTIFY:
      if (isFollowed(eventAs<xcb_reparent_notify_event_t>(event).window)) framesKnown_ = false;
      return;
    default:
      return;
  }
}

std::optional<Rect> ClientArea::read() {
  if (window_ == XCB_WINDOW_NONE) return std::nullopt;
  if (!framesKnown_) findFrames();
  if (!std::exchange(areaKnown_, true)) area_ = ClientAreaQuestion(session_, window_).take();
  return area_;
}

bool ClientArea::isFollowed(xcb_window_t window) const {
  return window == window_ || std::ranges::count(frames_, window) > 0;
}

void ClientArea::hear(std::uint32_t events) {
  for (const xcb_window_t frame : frames_) {
    xcb_change_window_attributes(session_.connection(), frame, XCB_CW_EVENT_MASK, &events);
  }
}

// The area is asked for after the frames tell of their moves, so that none is missed.
void ClientArea::findFrames() {
  framesKnown_ = true;
  areaKnown_ = false;
  hear(XCB_EVENT_MASK_NO_EVENT);
  frames_.clear();
  xcb_connection_t* const c = session_.connection();
  for (xcb_window_t reached = window_; frames_.size() < mostFrames;) {
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(c, xcb_query_tree(c, reached), nullptr));
    if (!tree || tree->parent == XCB_WINDOW_NONE || tree->parent == tree->root) break;
    reached = tree->parent;
    frames_.push_back(reached);
  }
  hear(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

}  // namespace vellora
