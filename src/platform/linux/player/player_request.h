#pragma once

#include <optional>
#include <string>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/glib/session_bus.h"

namespace vellora {

// The calls to a player that one request is made of, all under one deadline. After the first that
// fails no other is made, so that a request can be written down as if nothing failed and be judged
// at its end. Never starts a player. Main thread.
class PlayerRequest {
 public:
  PlayerRequest(GDBusConnection* bus, std::string busName, const Deadline& deadline)
      : bus_(bus), busName_(std::move(busName)), deadline_(deadline) {}

  // Calls a method of the object /org/mpris/MediaPlayer2 and waits for the answer. `arguments` may
  // be floating, or null for none; `answerType` may be null for any. Null when it fails.
  GVariantPtr call(const char* interface, const char* method, GVariant* arguments = nullptr,
                   const char* answerType = nullptr);

  // The same; that the player refuses the call does not fail the request.
  GVariantPtr tryCall(const char* interface, const char* method, GVariant* arguments = nullptr,
                      const char* answerType = nullptr);

  // Calls a method without waiting or caring for the answer.
  void send(const char* interface, const char* method);

  // Fails the request for a reason of the caller's.
  void fail(std::string reason);

  bool failed() const { return failure_.has_value(); }
  const std::optional<std::string>& failure() const { return failure_; }
  // Whether it failed because the player is not there any more.
  bool playerIsGone() const { return gone_; }
  // Whether it failed because the player let a call wait until the deadline.
  bool playerIsSilent() const { return silent_; }

  const Deadline& deadline() const { return deadline_; }
  GDBusConnection* bus() const { return bus_; }
  const std::string& busName() const { return busName_; }

 private:
  GDBusConnection* bus_;
  std::string busName_;
  const Deadline& deadline_;
  std::optional<std::string> failure_;
  std::string refusal_;
  bool gone_ = false;
  bool silent_ = false;
};

}  // namespace vellora
