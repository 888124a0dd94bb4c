#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/known_windows.h"

namespace vellora {

// A locator for a compositor that is asked for its windows: at the start and after each of its
// events, no more than one question under way, and one remembered. Where events do not tell of
// every move, the question is also put twice a second while somebody depends on places, and ten
// times a second while they change.
//
// After two seconds without an answer nothing is known until it comes. A peer that is gone, or that
// says what no such compositor says, is connected to again after 0.1 s, then in growing intervals,
// at last every second. Main thread.
class AskedWindows : public KnownWindows {
 public:
  void setWatched(bool isWatched) final;

 protected:
  AskedWindows();
  ~AskedWindows() override = default;

  // For the constructor of what derives from this, once.
  void connect();
  // The compositor said that something has changed.
  void takeEvent() { askSoon(); }
  // The answer; nothing: the peer is no such compositor, which ends the connection.
  void takeAnswer(std::optional<std::vector<LocatedWindow>> windows);
  // The peer is gone. Ends the connection.
  void reconnectLater();

 private:
  using Clock = std::chrono::steady_clock;

  // Whether somebody takes connections.
  virtual bool open() = 0;
  // Whether the question is on its way.
  virtual bool putQuestion() = 0;
  // Of the connection and of a question under way.
  virtual void close() = 0;

  void ask();
  void askSoon();
  void askAgainLater();

  std::chrono::milliseconds patience_;  // until the next attempt to connect
  bool isOpen_ = false;
  bool isWatched_ = false;
  bool isAsked_ = false;       // a question is under way
  bool isAskedAgain_ = false;  // and another is to follow
  Clock::time_point asked_{};
  Clock::time_point moved_{};  // when places changed last
  GSourcePtr connecting_;
  GSourcePtr silence_;
  GSourcePtr next_;
};

}  // namespace vellora
