#include "support/x_client.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/xcbext.h>

namespace vellora {

XClient::XClient(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
  if (xcb_connection_has_error(connection())) throw std::runtime_error("cannot connect");
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
}

void XClient::sync() {
  const XcbReply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
}

xcb_window_t XClient::makeWindow(const Rect& frame, std::uint32_t color, bool managed) {
  const xcb_window_t window = xcb_generate_id(connection());
  const std::array<std::uint32_t, 3> values{color, managed ? 0u : 1u, XCB_EVENT_MASK_BUTTON_PRESS};
  xcb_create_window(
      connection(), XCB_COPY_FROM_PARENT, window, root(), static_cast<std::int16_t>(frame.x),
      static_cast<std::int16_t>(frame.y), static_cast<std::uint16_t>(frame.width),
      static_cast<std::uint16_t>(frame.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
      screen_->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
      values.data());
  // WM_NORMAL_HINTS (ICCCM 4.1.2.3): the place is the user's wish.
  std::array<std::uint32_t, 18> hints{};
  hints[0] = 1;
  xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
  xcb_map_window(connection(), window);
  sync();
  return window;
}

void XClient::map(xcb_window_t window) {
  xcb_map_window(connection(), window);
  sync();
}

void XClient::destroyWindow(xcb_window_t window) {
  xcb_destroy_window(connection(), window);
  sync();
}

void XClient::unmap(xcb_window_t window) {
  xcb_unmap_window(connection(), window);
  sync();
}

void XClient::placeAbove(xcb_window_t window, xcb_window_t sibling) {
  const std::array<std::uint32_t, 2> values{sibling, XCB_STACK_MODE_ABOVE};
  xcb_configure_window(connection(), window,
                       XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
  sync();
}

void XClient::reparent(xcb_window_t window, xcb_window_t parent) {
  xcb_reparent_window(connection(), window, parent, 0, 0);
  sync();
}

void XClient::raise(xcb_window_t window) {
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  sync();
}

xcb_atom_t XClient::atom(std::string_view name) {
  const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection(),
      xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply->atom;
}

void XClient::setText(xcb_window_t window, std::string_view property, std::string_view value) {
  xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_STRING,
                      8, static_cast<std::uint32_t>(value.size()), value.data());
  sync();
}

void XClient::setNumber(xcb_window_t window, std::string_view property, std::uint32_t value) {
  xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom(property),
                      XCB_ATOM_CARDINAL, 32, 1, &value);
  sync();
}

void XClient::setWindows(xcb_window_t window, std::string_view property,
                         const std::vector<xcb_window_t>& windows) {
  xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_WINDOW,
                      32, static_cast<std::uint32_t>(windows.size()), windows.data());
  sync();
}

std::vector<std::uint32_t> XClient::numbers(xcb_window_t window, std::string_view property) {
  const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection(),
      xcb_get_property(connection(), 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
      nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

std::string XClient::text(xcb_window_t window, std::string_view property) {
  const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection(),
      xcb_get_property(connection(), 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
      nullptr));
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

xcb_window_t XClient::own(std::string_view selection) {
  const xcb_window_t window = xcb_generate_id(connection());
  xcb_create_window(connection(), XCB_COPY_FROM_PARENT, window, root(), -10, -10, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_set_selection_owner(connection(), window, atom(selection), XCB_CURRENT_TIME);
  sync();
  return window;
}

xcb_window_t XClient::owner(std::string_view selection) {
  const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection(), xcb_get_selection_owner(connection(), atom(selection)), nullptr));
  return reply->owner;
}

void XClient::sendToRoot(xcb_window_t window, std::string_view type,
                         const std::vector<std::uint32_t>& data) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atom(type);
  std::ranges::copy(data, message.data.data32);
  xcb_send_event(connection(), 0, root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  sync();
}

void XClient::activate(xcb_window_t window) {
  sendToRoot(window, "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME, 0});
}

void XClient::makeFullscreen(xcb_window_t window) {
  sendToRoot(window, "_NET_WM_STATE", {1, atom("_NET_WM_STATE_FULLSCREEN"), 0, 2});
}

// Written out by hand: libxcb 1.15's own function for this request trips over an assertion of its
// own. RandR 1.5, RRSetMonitor.
void XClient::setMonitor(std::string_view name, bool primary, std::uint16_t height,
                         bool withOutput) {
  struct Request {
    std::uint8_t majorOpcode = 0;
    std::uint8_t minorOpcode = 0;
    std::uint16_t length = 0;
    xcb_window_t window = 0;
    xcb_atom_t name = 0;
    std::uint8_t primary = 0;
    std::uint8_t automatic = 0;
    std::uint16_t outputCount = 0;
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 640;
    std::uint16_t height = 0;
    std::uint32_t widthMillimetres = 100;
    std::uint32_t heightMillimetres = 100;
    xcb_randr_output_t output = 0;
  } request;
  const XcbReply<xcb_randr_get_screen_resources_reply_t> resources(
      xcb_randr_get_screen_resources_reply(
          connection(), xcb_randr_get_screen_resources(connection(), root()), nullptr));
  request.window = root();
  request.name = atom(name);
  request.primary = primary;
  request.outputCount = withOutput;
  request.height = height;
  request.output = *xcb_randr_get_screen_resources_outputs(resources.get());
  std::array<iovec, 3> parts{};
  parts[2] = {&request, sizeof request - (withOutput ? 0 : sizeof request.output)};
  xcb_protocol_request_t protocol{1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
  xcb_send_request(connection(), 0, &parts[2], &protocol);
  sync();
}

std::uint32_t XClient::pixel(int x, int y) { return pixelOf(root(), x, y) & 0xffffff; }

std::uint32_t XClient::pixelOf(xcb_window_t window, int x, int y) {
  const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
      connection(),
      xcb_get_image(connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t>(x),
                    static_cast<std::int16_t>(y), 1, 1, 0xffffffff),
      nullptr));
  std::uint32_t value = 0;
  std::memcpy(&value, xcb_get_image_data(reply.get()), sizeof value);
  return value;
}

std::vector<xcb_window_t> XClient::topLevels() {
  const XcbReply<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection(), xcb_query_tree(connection(), root()), nullptr));
  const xcb_window_t* const first = xcb_query_tree_children(reply.get());
  return {first, first + reply->children_len};
}

Rect XClient::frame(xcb_window_t window) {
  const XcbReply<xcb_get_geometry_reply_t> reply(
      xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), window), nullptr));
  if (!reply) return Rect::null();
  return {static_cast<double>(reply->x), static_cast<double>(reply->y),
          static_cast<double>(reply->width), static_cast<double>(reply->height)};
}

std::optional<std::vector<Rect>> XClient::boundingShape(xcb_window_t window) {
  const XcbReply<xcb_shape_query_extents_reply_t> extents(xcb_shape_query_extents_reply(
      connection(), xcb_shape_query_extents(connection(), window), nullptr));
  if (!extents || extents->bounding_shaped == 0) return std::nullopt;
  const XcbReply<xcb_shape_get_rectangles_reply_t> reply(xcb_shape_get_rectangles_reply(
      connection(), xcb_shape_get_rectangles(connection(), window, XCB_SHAPE_SK_BOUNDING),
      nullptr));
  std::vector<Rect> rects;
  const xcb_rectangle_t* const first = xcb_shape_get_rectangles_rectangles(reply.get());
  for (std::uint32_t i = 0; i < reply->rectangles_len; ++i) {
    rects.push_back({static_cast<double>(first[i].x), static_cast<double>(first[i].y),
                     static_cast<double>(first[i].width), static_cast<double>(first[i].height)});
  }
  return rects;
}

void XClient::setInputShape(xcb_window_t window, const Rect& shape) {
  const xcb_rectangle_t rectangle{
      static_cast<std::int16_t>(shape.x), static_cast<std::int16_t>(shape.y),
      static_cast<std::uint16_t>(shape.width), static_cast<std::uint16_t>(shape.height)};
  xcb_shape_rectangles(connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                       XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 1, &rectangle);
  sync();
}

void XClient::clear(xcb_window_t window) {
  xcb_clear_area(connection(), 1, window, 0, 0, 0, 0);
  sync();
}

bool XClient::isViewable(xcb_window_t window) {
  const XcbReply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
      connection(), xcb_get_window_attributes(connection(), window), nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t XClient::focused() {
  const XcbReply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
  return reply->focus;
}

xcb_window_t XClient::topLevelOf(xcb_window_t window) {
  while (true) {
    const XcbReply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
    if (!reply || reply->parent == root() || reply->parent == XCB_WINDOW_NONE) return window;
    window = reply->parent;
  }
}

bool XClient::sawClick() {
  sync();
  bool saw = false;
  while (const XcbEvent event = XcbEvent(xcb_poll_for_event(connection()))) {
    saw = saw || eventType(*event) == XCB_BUTTON_PRESS;
  }
  return saw;
}

xcb_window_t XClient::findByClass(std::string_view classPart) {
  for (const xcb_window_t window : topLevels()) {
    const std::string both = text(window, "WM_CLASS");
    const std::size_t gap = both.find('\0');
    if (gap == std::string::npos) continue;
    if (both.substr(gap + 1, classPart.size()) == classPart) return window;
  }
  return XCB_WINDOW_NONE;
}

}  // namespace vellora
