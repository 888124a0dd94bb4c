#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/linux/x11/stacking_order.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

// What is known of the root's children while they are watched: the server's word for it is asked
// again only where an event says that something changed that matters to the panel's place. A
// top-level is managed when it is or holds a window of _NET_CLIENT_LIST or the active one (EWMH
// 1.5): frames may themselves be override-redirect, so that attribute alone does not tell. Where
// each client is, is asked anew when either property changes. Main thread.
class TopLevels {
 public:
  explicit TopLevels(XSession& session) : session_(session) {}

  // Begins or ends hearing of all top-level windows; what was known is forgotten.
  void watch(bool watch);

  // Takes note of an event. Something that `read` gives may be different since it was read.
  void handleEvent(const xcb_generic_event_t& event);
  bool changed() const { return changed_; }

  // All of them, the lowest first; empty without an answer. One round trip, and a few more for what
  // was not known yet: the questions of a kind go together. The session must be present.
  std::vector<TopLevel> read();
  // The top-level that is or holds the active window, as of the last `read`; none without one.
  xcb_window_t active() const;

  // What the caller has asked of the server, whose events will only repeat it: `window` is mapped;
  // it lies directly above `sibling`, below all others where that is none.
  void noteMapped(xcb_window_t window) { noteMapped(window, true); }
  void noteRestacked(xcb_window_t window, xcb_window_t sibling);

 private:
  struct Traits {
    bool mapped = false;
    bool takesInputOnly = false;
    bool overrideRedirect = false;
  };
  void noteConfigured(xcb_window_t window, xcb_window_t above);
  void noteMapped(xcb_window_t window, bool mapped);
  void forget(xcb_window_t window);
  void readClients();
  void askTraits();
  void findHomes();

  XSession& session_;
  bool changed_ = true;
  std::vector<xcb_window_t> order_;                   // the lowest first
  std::map<xcb_window_t, Traits> traits_;             // of a top-level
  std::map<xcb_window_t, xcb_window_t> homes_;        // the top-level of a client
  std::optional<std::vector<xcb_window_t>> clients_;  // with the active one
  xcb_window_t active_ = XCB_WINDOW_NONE;
};

}  // namespace vellora
