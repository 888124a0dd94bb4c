#include "platform/linux/x11/x_property.h"

#include <utility>

#include <xcb/xcbext.h>

namespace vellora {

PropertyQuestion::PropertyQuestion(xcb_connection_t* connection, xcb_window_t window,
                                   xcb_atom_t property, std::uint32_t maximumBytes)
    : connection_(connection),
      cookie_(xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                               (maximumBytes + 3) / 4)) {}

bool PropertyQuestion::hasArrived() {
  if (arrived_) return true;
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  arrived_ = xcb_poll_for_reply(connection_, cookie_.sequence, &reply, &error) != 0;
  const XcbReply<xcb_generic_error_t> taken(error);
  reply_.reset(static_cast<xcb_get_property_reply_t*>(reply));
  return arrived_;
}

XcbReply<xcb_get_property_reply_t> PropertyQuestion::take() {
  if (arrived_) {
    failed_ = !reply_;
    return std::move(reply_);
  }
  // Without a place for it, an error would come back as an event; the reply says enough.
  xcb_generic_error_t* error = nullptr;
  XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie_, &error));
  const XcbReply<xcb_generic_error_t> taken(error);
  failed_ = !reply;
  return reply;
}

std::vector<std::uint32_t> PropertyQuestion::takeNumbers() {
  const auto reply = take();
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

std::optional<std::string> PropertyQuestion::takeBytes() {
  const auto reply = take();
  if (!reply || reply->format != 8) return std::nullopt;
  return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                     static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

void setNumbers(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                xcb_atom_t type, const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

void setBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, std::string_view bytes) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                      static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

}  // namespace vellora
