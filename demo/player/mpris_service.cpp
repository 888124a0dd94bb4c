#include "player/mpris_service.h"

#include <string>
#include <utility>

#include <unistd.h>

#include "playback/track_id.h"
#include "player/mpris_interfaces.h"
#include "player/mpris_values.h"

namespace vellora::demo {
namespace {

constexpr const char* busName = "org.mpris.MediaPlayer2.vellora_demo_player";

void answer(GDBusMethodInvocation* invocation, GVariant* value = nullptr) {
  g_dbus_method_invocation_return_value(invocation, value);
}

void refuse(GDBusMethodInvocation* invocation, const char* why) {
  g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR,
                                                G_DBUS_ERROR_NOT_SUPPORTED, why);
}

}  // namespace

MprisService::MprisService(Playback& playback, Actions actions)
    : playback_(playback),
      actions_(std::move(actions)),
      interfaces_(g_dbus_node_info_new_for_xml(mprisIntrospection, nullptr)) {
  name_ = g_bus_own_name(G_BUS_TYPE_SESSION, busName, G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE,
                         busAcquired, nullptr, nameLost, this, nullptr);
  playback_.listen([this](const Playback::Change& change) { playbackChanged(change); });
}

MprisService::~MprisService() {
  if (instanceName_ != 0) g_bus_unown_name(instanceName_);
  g_bus_unown_name(name_);
  for (const guint id : registrations_) {
    g_dbus_connection_unregister_object(connection_.get(), id);
  }
}

void MprisService::busAcquired(GDBusConnection* connection, const gchar*, gpointer self) {
  auto* service = static_cast<MprisService*>(self);
  service->connection_.reset(G_DBUS_CONNECTION(g_object_ref(connection)));
  g_dbus_connection_set_exit_on_close(connection, FALSE);  // the window plays on without a bus
  static constexpr GDBusInterfaceVTable table{methodCalled, propertyRead, propertyWritten, {}};
  for (const char* name : {mprisRootInterface, mprisPlayerInterface, mprisTrackListInterface}) {
    GDBusInterfaceInfo* interface =
        g_dbus_node_info_lookup_interface(service->interfaces_.get(), name);
    const guint id = g_dbus_connection_register_object(connection, mprisObjectPath, interface,
                                                       &table, service, nullptr, nullptr);
    if (id != 0) service->registrations_.push_back(id);
  }
}

void MprisService::nameLost(GDBusConnection* connection, const gchar*, gpointer self) {
  auto* service = static_cast<MprisService*>(self);
  if (connection == nullptr || service->instanceName_ != 0) return;
  const std::string own = std::string(busName) + ".instance" + std::to_string(getpid());
  service->instanceName_ = g_bus_own_name_on_connection(
      connection, own.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
}

void MprisService::methodCalled(GDBusConnection*, const gchar*, const gchar*,
                                const gchar* interface, const gchar* method, GVariant* parameters,
                                GDBusMethodInvocation* invocation, gpointer self) {
  auto* service = static_cast<MprisService*>(self);
  const std::string_view name = interface;
  const bool known = name == mprisRootInterface ? service->callRoot(method, invocation)
                     : name == mprisPlayerInterface
                         ? service->callPlayer(method, parameters, invocation)
                         : service->callTrackList(method, parameters, invocation);
  if (!known) refuse(invocation, "This player has no files to open or list to edit.");
}

bool MprisService::callRoot(std::string_view method, GDBusMethodInvocation* invocation) {
  if (method == "Raise") {
    actions_.raise();
  } else if (method == "Quit") {
    actions_.quit();
  } else {
    return false;
  }
  answer(invocation);
  return true;
}

bool MprisService::callPlayer(std::string_view method, GVariant* parameters,
                              GDBusMethodInvocation* invocation) {
  if (method == "Next") {
    playback_.next();
  } else if (method == "Previous") {
    playback_.previous();
  } else if (method == "Pause") {
    playback_.pause();
  } else if (method == "PlayPause") {
    playback_.playPause();
  } else if (method == "Stop") {
    playback_.stop();
  } else if (method == "Play") {
    playback_.play();
  } else if (method == "Seek") {
    gint64 offset = 0;
    g_variant_get(parameters, "(x)", &offset);
    playback_.seek(secondsFrom(offset));
  } else if (method == "SetPosition") {
    const gchar* track = nullptr;
    gint64 position = 0;
    g_variant_get(parameters, "(&ox)", &track, &position);
    // A position for a song that is no longer the current one is out of date.
    if (trackId(playback_.index()) == track) playback_.setPosition(secondsFrom(position));
  } else {
    return false;
  }
  answer(invocation);
  return true;
}

bool MprisService::callTrackList(std::string_view method, GVariant* parameters,
                                 GDBusMethodInvocation* invocation) {
  const std::size_t count = playback_.songs().size();
  if (method == "GoTo") {
    const gchar* track = nullptr;
    g_variant_get(parameters, "(&o)", &track);
    if (const auto index = trackIndex(track, count)) playback_.goTo(*index);
    answer(invocation);
    return true;
  }
  if (method != "GetTracksMetadata") return false;
  const GVariantPtr ids(g_variant_get_child_value(parameters, 0));
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("aa{sv}"));
  for (gsize i = 0; i < g_variant_n_children(ids.get()); ++i) {
    const gchar* track = nullptr;
    g_variant_get_child(ids.get(), i, "&o", &track);
    if (const auto index = trackIndex(track, count)) {
      g_variant_builder_add_value(&builder, trackMetadata(playback_, *index));
    }
  }
  answer(invocation, g_variant_new("(aa{sv})", &builder));
  return true;
}

GVariant* MprisService::propertyRead(GDBusConnection*, const gchar*, const gchar*,
                                     const gchar* interface, const gchar* name, GError** error,
                                     gpointer self) {
  const Playback& playback = static_cast<MprisService*>(self)->playback_;
  const std::string_view wanted = interface;
  GVariant* value = wanted == mprisRootInterface     ? rootProperty(name)
                    : wanted == mprisPlayerInterface ? playerProperty(playback, name)
                                                     : trackListProperty(playback, name);
  if (value == nullptr) {
    g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "No such property.");
  }
  return value;
}

gboolean MprisService::propertyWritten(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                                       const gchar* name, GVariant* value, GError**,
                                       gpointer self) {
  Playback& playback = static_cast<MprisService*>(self)->playback_;
  const double number = g_variant_get_double(value);  // both writable properties are doubles
  if (std::string_view(name) == "Rate") {
    playback.setRate(number);
  } else {
    playback.setVolume(number);
  }
  return TRUE;
}

void MprisService::playbackChanged(const Playback::Change& change) {
  if (!connection_) return;
  GVariantBuilder changed;
  g_variant_builder_init(&changed, G_VARIANT_TYPE("a{sv}"));
  bool any = false;
  const auto add = [&](bool wanted, const char* name) {
    if (!wanted) return;
    g_variant_builder_add(&changed, "{sv}", name, playerProperty(playback_, name));
    any = true;
  };
  add(change.track, "Metadata");
  add(change.status, "PlaybackStatus");
  add(change.rate, "Rate");
  add(change.volume, "Volume");
  const GVariantPtr properties(
      g_variant_ref_sink(g_variant_new("(sa{sv}as)", mprisPlayerInterface, &changed, nullptr)));
  if (any) emit("org.freedesktop.DBus.Properties", "PropertiesChanged", properties.get());
  if (change.position) {
    emit(mprisPlayerInterface, "Seeked",
         g_variant_new("(x)", static_cast<gint64>(microseconds(playback_.position()))));
  }
}

void MprisService::emit(const char* interface, const char* signal, GVariant* parameters) {
  g_dbus_connection_emit_signal(connection_.get(), nullptr, mprisObjectPath, interface, signal,
                                parameters, nullptr);
}

}  // namespace vellora::demo
