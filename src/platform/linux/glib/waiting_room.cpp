#include "platform/linux/glib/waiting_room.h"

#include "platform/linux/glib/event_source.h"

namespace vellora {

void WaitingRoom::enter(const std::function<void()>& start) const {
  g_main_context_push_thread_default(context_.get());
  start();
  g_main_context_pop_thread_default(context_.get());
}

bool WaitingRoom::waitUntil(const std::function<bool()>& condition,
                            const Deadline& deadline) const {
  const auto alarm = attachSource(
      g_timeout_source_new(static_cast<guint>(deadline.remainingMilliseconds())), [] {},
      G_PRIORITY_DEFAULT, context_.get());
  while (!condition()) {
    if (deadline.passed()) return false;
    g_main_context_iteration(context_.get(), TRUE);
  }
  return true;
}

void WaitingRoom::catchUp() const {
  while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
  }
}

}  // namespace vellora
