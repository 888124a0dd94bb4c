#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/glib/session_bus.h"
#include "platform/linux/glib/waiting_room.h"

namespace vellora {

// What became of a question. An error is an answer without a value.
struct BusAnswer {
  bool arrived = false;
  GVariantPtr value;
};
using BusAnswerPtr = std::shared_ptr<const BusAnswer>;

// Questions over the session bus whose answers come when they come, however long that takes; none
// starts a service. Main thread.
class BusQuestions {
 public:
  explicit BusQuestions(SessionBus bus);
  ~BusQuestions();
  BusQuestions(const BusQuestions&) = delete;
  BusQuestions& operator=(const BusQuestions&) = delete;

  GDBusConnection* bus() const { return bus_.get(); }

  // Calls a method of the bus daemon with one text; the value is what it returns.
  BusAnswerPtr askDaemon(const char* method, const std::string& text);
  // Asks for a property of an MPRIS player; the value is the property's.
  BusAnswerPtr askPlayer(const std::string& busName, const char* interface, const char* property);
  // Asks for all properties of one of its interfaces (a{sv}).
  BusAnswerPtr askPlayerAll(const std::string& busName, const char* interface);
  // Asks the bus daemon which names there are (as).
  BusAnswerPtr listNames();

  // Answers arrive in these alone. The first does not wait; the second waits until `condition`
  // holds and is false when the deadline comes first.
  void catchUp() const { room_.catchUp(); }
  bool waitUntil(const std::function<bool()>& condition, const Deadline& deadline) const {
    return room_.waitUntil(condition, deadline);
  }
  // What `start` begins is told in these, too.
  void enter(const std::function<void()>& start) const { room_.enter(start); }

 private:
  struct Question {
    const char* destination;
    const char* path;
    const char* interface;
    const char* method;
    GVariant* arguments;  // floating
  };
  BusAnswerPtr call(const Question& question);
  static void answered(GObject* bus, GAsyncResult* result, gpointer answer) noexcept;

  SessionBus bus_;
  WaitingRoom room_;
  GObjectPtr<GCancellable> end_;
};

// The value, where it is a text or a 32-bit number without a sign.
std::optional<std::string> textOf(const BusAnswer& answer);
std::optional<std::uint32_t> numberOf(const BusAnswer& answer);

}  // namespace vellora
