#include "platform/linux/player/bus_questions.h"

#include <utility>

namespace vellora {

namespace {

constexpr const char* daemon = "org.freedesktop.DBus";

}  // namespace

BusQuestions::BusQuestions(SessionBus bus) : bus_(std::move(bus)), end_(g_cancellable_new()) {}

BusQuestions::~BusQuestions() {
  g_cancellable_cancel(end_.get());
  room_.catchUp();  // each question still open ends here
}

BusAnswerPtr BusQuestions::askDaemon(const char* method, const std::string& text) {
  return call({.destination = daemon,
               .path = "/org/freedesktop/DBus",
               .interface = daemon,
               .method = method,
               .arguments = g_variant_new("(s)", text.c_str())});
}

BusAnswerPtr BusQuestions::askPlayer(const std::string& busName, const char* interface,
                                     const char* property) {
  return call({.destination = busName.c_str(),
               .path = "/org/mpris/MediaPlayer2",
               .interface = "org.freedesktop.DBus.Properties",
               .method = "Get",
               .arguments = g_variant_new("(ss)", interface, property)});
}

BusAnswerPtr BusQuestions::askPlayerAll(const std::string& busName, const char* interface) {
  return call({.destination = busName.c_str(),
               .path = "/org/mpris/MediaPlayer2",
               .interface = "org.freedesktop.DBus.Properties",
               .method = "GetAll",
               .arguments = g_variant_new("(s)", interface)});
}

BusAnswerPtr BusQuestions::listNames() {
  return call({.destination = daemon,
               .path = "/org/freedesktop/DBus",
               .interface = daemon,
               .method = "ListNames",
               .arguments = nullptr});
}

BusAnswerPtr BusQuestions::call(const Question& question) {
  const auto answer = std::make_shared<BusAnswer>();
  room_.enter([&] {
    g_dbus_connection_call(bus_.get(), question.destination, question.path, question.interface,
                           question.method, question.arguments, nullptr,
                           G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, end_.get(),
                           &BusQuestions::answered, new std::shared_ptr<BusAnswer>(answer));
  });
  return answer;
}

void BusQuestions::answered(GObject* bus, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<std::shared_ptr<BusAnswer>> answer(
      static_cast<std::shared_ptr<BusAnswer>*>(data));
  (*answer)->arrived = true;
  const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  if (!reply || g_variant_n_children(reply.get()) != 1) return;
  GVariantPtr value(g_variant_get_child_value(reply.get(), 0));
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  (*answer)->value = std::move(value);
}

std::optional<std::string> textOf(const BusAnswer& answer) {
  if (!answer.value || g_variant_is_of_type(answer.value.get(), G_VARIANT_TYPE_STRING) == FALSE) {
    return std::nullopt;
  }
  return g_variant_get_string(answer.value.get(), nullptr);
}

std::optional<std::uint32_t> numberOf(const BusAnswer& answer) {
  if (!answer.value || g_variant_is_of_type(answer.value.get(), G_VARIANT_TYPE_UINT32) == FALSE) {
    return std::nullopt;
  }
  return g_variant_get_uint32(answer.value.get());
}

}  // namespace vellora
