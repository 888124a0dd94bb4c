#include "platform/linux/x11/selection_watch.h"

#include <xcb/xfixes.h>

#include "platform/linux/x11/x_session.h"

namespace vellora {

SelectionWatch::SelectionWatch(XSession& session, xcb_atom_t selection)
    : session_(session), selection_(selection) {
  xcb_connection_t* const c = session.connection();
  if (session.fixesFirstEvent()) {
    xcb_xfixes_select_selection_input(c, session.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  }
  const XcbReply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr));
  if (reply) owner_ = reply->owner;
}

bool SelectionWatch::handleEvent(const xcb_generic_event_t& event) {
  const auto first = session_.fixesFirstEvent();
  if (!first || eventType(event) != *first + XCB_XFIXES_SELECTION_NOTIFY) return false;
  const auto& notice = eventAs<xcb_xfixes_selection_notify_event_t>(event);
  if (notice.selection != selection_) return false;
  // A selection that its owner gave up by dying may still be named with the old owner.
  xcb_window_t owner = XCB_WINDOW_NONE;
  if (notice.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) owner = notice.owner;
  const bool changed = owner != owner_;
  owner_ = owner;
  return changed;
}

}  // namespace vellora
