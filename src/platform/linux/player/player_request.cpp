#include "platform/linux/player/player_request.h"

#include <utility>

namespace vellora {
namespace {

constexpr const char* playerPath = "/org/mpris/MediaPlayer2";

// What the player itself answered, as against what became of the call on its way.
bool isRefusal(const GError* error) {
  if (g_dbus_error_is_remote_error(error) == FALSE) return false;
  for (const auto code : {G_DBUS_ERROR_NO_REPLY, G_DBUS_ERROR_TIMEOUT, G_DBUS_ERROR_TIMED_OUT,
                          G_DBUS_ERROR_DISCONNECTED}) {
    if (g_error_matches(error, G_DBUS_ERROR, code)) return false;
  }
  return true;
}

bool isGone(const GError* error) {
  return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY);
}

std::string describe(const GError* error) {
  GError* copy = g_error_copy(error);
  const GErrorPtr held(copy);
  g_dbus_error_strip_remote_error(copy);
  return copy->message;
}

}  // namespace

GVariantPtr PlayerRequest::tryCall(const char* interface, const char* method, GVariant* arguments,
                                   const char* answerType) {
  const GVariantPtr held = arguments != nullptr ? ownVariant(arguments) : nullptr;
  if (failed()) return nullptr;
  const int remaining = deadline_.remainingMilliseconds();
  GErrorSlot error;
  GVariantPtr answer;
  if (remaining > 0) {
    answer.reset(g_dbus_connection_call_sync(
        bus_, busName_.c_str(), playerPath, interface, method, held.get(),
        answerType != nullptr ? G_VARIANT_TYPE(answerType) : nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, remaining, nullptr, error.out()));
    if (answer) return answer;
  }
  silent_ = g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE;
  if (remaining == 0 || silent_) {
    fail(std::string("the player did not answer in time (") + method + ")");
  } else if (isGone(error.get())) {
    gone_ = true;
    fail("the player is gone");
  } else if (!isRefusal(error.get())) {
    fail(describe(error.get()));
  }
  refusal_ = error.get() != nullptr ? describe(error.get()) : std::string();
  return nullptr;
}

GVariantPtr PlayerRequest::call(const char* interface, const char* method, GVariant* arguments,
                                const char* answerType) {
  auto answer = tryCall(interface, method, arguments, answerType);
  if (!answer && !failed()) fail(refusal_);
  return answer;
}

void PlayerRequest::send(const char* interface, const char* method) {
  if (failed()) return;
  g_dbus_connection_call(bus_, busName_.c_str(), playerPath, interface, method, nullptr, nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
}

void PlayerRequest::fail(std::string reason) {
  if (!failed()) failure_ = std::move(reason);
}

}  // namespace vellora
