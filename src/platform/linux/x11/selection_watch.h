#pragma once

#include <xcb/xcb.h>

namespace vellora {

class XSession;

// Who owns a selection, kept up to date by the server's own word (XFixes). Desktop services that
// exist once a screen show by a selection that they are there. Main thread.
class SelectionWatch {
 public:
  // The session must be present.
  SelectionWatch(XSession& session, xcb_atom_t selection);

  // The owner's window; none when nobody owns it.
  xcb_window_t owner() const { return owner_; }

  // Takes note of an event; whether the owner changed with it.
  bool handleEvent(const xcb_generic_event_t& event);

 private:
  XSession& session_;
  xcb_atom_t selection_;
  xcb_window_t owner_ = XCB_WINDOW_NONE;
};

}  // namespace vellora
