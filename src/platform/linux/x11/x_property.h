#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "platform/linux/x11/xcb_types.h"

namespace vellora {

// A question for a property that has been sent and whose answer is still to be taken. Ask several,
// then take them: that costs one round trip. Each answer is taken exactly once.
class PropertyQuestion {
 public:
  // Of any type, the first `maximumBytes` of it.
  PropertyQuestion(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                   std::uint32_t maximumBytes = 4096);

  // Whether the answer can be taken without waiting.
  bool hasArrived();

  // 32-bit items; empty when the property is not there or of another width.
  std::vector<std::uint32_t> takeNumbers();
  // Bytes; nothing when the property is not there or of another width.
  std::optional<std::string> takeBytes();
  // Whether the server gave no answer, or an error, to the question that has been taken.
  bool failed() const { return failed_; }

 private:
  XcbReply<xcb_get_property_reply_t> take();

  xcb_connection_t* connection_;
  xcb_get_property_cookie_t cookie_;
  bool arrived_ = false;
  bool failed_ = false;
  XcbReply<xcb_get_property_reply_t> reply_;  // once it has arrived
};

// Each replaces the whole property of a window.
void setNumbers(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                xcb_atom_t type, const std::vector<std::uint32_t>& values);
void setBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, std::string_view bytes);

}  // namespace vellora
