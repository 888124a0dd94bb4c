#pragma once

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace vellora {

// libxcb hands out replies and events in memory from malloc.
struct XcbFree {
  void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
using XcbReply = std::unique_ptr<T, XcbFree>;

using XcbEvent = std::unique_ptr<xcb_generic_event_t, XcbFree>;

struct XcbDisconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

using XcbConnectionPtr = std::unique_ptr<xcb_connection_t, XcbDisconnect>;

// The kind of an event, without the mark of those that another client sent.
inline std::uint8_t eventType(const xcb_generic_event_t& event) {
  return static_cast<std::uint8_t>(event.response_type & 0x7f);
}

// The event as what its kind says that it is.
template <typename T>
const T& eventAs(const xcb_generic_event_t& event) {
  return reinterpret_cast<const T&>(event);
}

}  // namespace vellora
