// The program behind FakePlayer: a player on the session bus that DBUS_SESSION_BUS_ADDRESS names.
// Takes its setup as its argument and writes its log to the socket at descriptor 3.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include <gio/gio.h>
#include <sys/prctl.h>
#include <sys/socket.h>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/player/fake_player_setup.h"

namespace vellora {
namespace {

constexpr const char* introspection = R"(<node>
  <interface name='org.mpris.MediaPlayer2'>
    <method name='Raise'/>
    <property name='DesktopEntry' type='s' access='read'/>
  </interface>
  <interface name='org.mpris.MediaPlayer2.Player'>
    <method name='Play'/> <method name='Pause'/> <method name='Next'/> <method name='Previous'/>
    <method name='SetPosition'>
      <arg type='o' direction='in'/> <arg type='x' direction='in'/>
    </method>
    <property name='PlaybackStatus' type='s' access='read'/>
    <property name='Metadata' type='a{sv}' access='read'/>
    <property name='Position' type='x' access='read'/>
  </interface>
  <interface name='org.mpris.MediaPlayer2.TrackList'>
    <method name='GetTracksMetadata'>
      <arg type='ao' direction='in'/> <arg type='aa{sv}' direction='out'/>
    </method>
    <method name='GoTo'><arg type='o' direction='in'/></method>
    <property name='Tracks' type='ao' access='read'/>
  </interface>
</node>)";
constexpr const char* path = "/org/mpris/MediaPlayer2";
constexpr const char* playerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* noTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

class Service {
 public:
  Service(FakePlayerSetup setup, int log) : setup_(std::move(setup)), log_(log) {}

  void run() {
    GError* error = nullptr;
    bus_.reset(g_dbus_connection_new_for_address_sync(
        g_getenv("DBUS_SESSION_BUS_ADDRESS"),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error));
    if (!bus_) std::_Exit(1);
    const GNodeInfoPtr node(g_dbus_node_info_new_for_xml(introspection, nullptr));
    static constexpr GDBusInterfaceVTable calls{&Service::called, &Service::get, nullptr, {}};
    for (auto** interface = node->interfaces; *interface != nullptr; ++interface) {
      const std::string_view name((*interface)->name);
      if (name.ends_with("TrackList") && !setup_.trackList) continue;
      g_dbus_connection_register_object(bus_.get(), path, *interface, &calls, this, nullptr,
                                        nullptr);
    }
    g_dbus_connection_add_filter(bus_.get(), &Service::filter, this, nullptr);
    const GVariantPtr owned(g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", setup_.busName.c_str(), 4u), nullptr,
        G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
    if (!owned) std::_Exit(1);
    write("ready");
    const GMainLoopPtr loop(g_main_loop_new(nullptr, FALSE));
    g_main_loop_run(loop.get());
  }

 private:
  const FakePlayerTrack* current() const {
    return setup_.current < setup_.tracks.size() ? &setup_.tracks[setup_.current] : nullptr;
  }

  void write(const std::string& line) const {
    [[maybe_unused]] const auto sent = ::send(log_, line.data(), line.size(), 0);
  }

  static GVariant* metadata(const FakePlayerTrack* track) {
    GVariantBuilder map;
    g_variant_builder_init(&map, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(
        &map, "{sv}", "mpris:trackid",
        g_variant_new_object_path(track != nullptr ? track->id.c_str() : noTrack));
    if (track != nullptr) {
      GVariantBuilder artists;
      g_variant_builder_init(&artists, G_VARIANT_TYPE_STRING_ARRAY);
      for (const auto& artist : track->artists)
        g_variant_builder_add(&artists, "s", artist.c_str());
      g_variant_builder_add(&map, "{sv}", "xesam:title",
                            g_variant_new_string(track->title.c_str()));
      g_variant_builder_add(&map, "{sv}", "xesam:artist", g_variant_builder_end(&artists));
      g_variant_builder_add(&map, "{sv}", "xesam:album",
                            g_variant_new_string(track->album.c_str()));
    }
    return g_variant_builder_end(&map);
  }

  GVariant* trackIds() const {
    GVariantBuilder ids;
    g_variant_builder_init(&ids, G_VARIANT_TYPE_OBJECT_PATH_ARRAY);
    for (const auto& track : setup_.tracks) g_variant_builder_add(&ids, "o", track.id.c_str());
    return g_variant_builder_end(&ids);
  }

  static GVariant* get(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                       const gchar* property, GError** error, gpointer data) noexcept {
    const auto& self = *static_cast<Service*>(data);
    const std::string name(property);
    if (name == "DesktopEntry") {
      if (self.setup_.desktopEntry) return g_variant_new_string(self.setup_.desktopEntry->c_str());
      g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS, "no such property");
      return nullptr;
    }
    if (name == "PlaybackStatus") return g_variant_new_string(self.setup_.status.c_str());
    if (name == "Position") return g_variant_new_int64(self.setup_.position);
    if (name == "Tracks") return self.trackIds();
    return metadata(self.current());
  }

  // Runs in the bus's worker thread; looks at what never changes only.
  static GDBusMessage* filter(GDBusConnection*, GDBusMessage* message, gboolean incoming,
                              gpointer data) noexcept {
    const auto& setup = static_cast<const Service*>(data)->setup_;
    if (incoming == FALSE ||
        g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) {
      return message;
    }
    const std::string method = g_dbus_message_get_member(message);
    if (setup.deadly.contains(method)) std::_Exit(0);
    if (!setup.mute.contains(method)) return message;
    g_object_unref(message);
    return nullptr;
  }

  void changeTo(std::size_t index) {
    setup_.current = index;
    setup_.position = 0;
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&changed, "{sv}", "Metadata", metadata(current()));
    g_dbus_connection_emit_signal(
        bus_.get(), nullptr, path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
        g_variant_new("(sa{sv}as)", playerInterface, &changed, nullptr), nullptr);
  }

  void goTo(const std::string& id) {
    if (!setup_.changes) return;
    const auto track = std::ranges::find(setup_.tracks, id, &FakePlayerTrack::id);
    next_ = static_cast<std::size_t>(track - setup_.tracks.begin());
    if (setup_.changesAfter == 0) return changeTo(next_);
    g_timeout_add(
        setup_.changesAfter,
        [](gpointer data) -> gboolean {
          auto& self = *static_cast<Service*>(data);
          self.changeTo(self.next_);
          return G_SOURCE_REMOVE;
        },
        this);
  }

  static void called(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                     const gchar* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                     gpointer data) noexcept {
    auto& self = *static_cast<Service*>(data);
    const std::string name(method);
    std::string line = name;
    const gchar* id = nullptr;
    gint64 position = 0;
    if (name == "SetPosition") {
      g_variant_get(arguments, "(&ox)", &id, &position);
      line += std::string(" ") + id + " " + std::to_string(position);
    } else if (name == "GoTo") {
      g_variant_get(arguments, "(&o)", &id);
      line += std::string(" ") + id;
    }
    self.write(line);
    if (self.setup_.refused.contains(name)) {
      g_dbus_method_invocation_return_dbus_error(invocation, "org.example.Refused",
                                                 ("will not " + name).c_str());
      return;
    }
    if (name == "GetTracksMetadata") {
      GVariantBuilder list;
      g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
      for (const auto& track : self.setup_.tracks) {
        g_variant_builder_add_value(&list, metadata(&track));
      }
      g_dbus_method_invocation_return_value(invocation, g_variant_new("(aa{sv})", &list));
      return;
    }
    if (name == "Play") self.setup_.status = "Playing";
    if (name == "Pause") self.setup_.status = "Paused";
    if (name == "Next") self.changeTo(self.setup_.current + 1);
    if (name == "Previous" && self.setup_.current > 0) self.changeTo(self.setup_.current - 1);
    // As the interface wants it: a position for another track than the current one is ignored.
    if (name == "SetPosition" && self.current() != nullptr && self.current()->id == id) {
      self.setup_.position = position;
    }
    if (name == "SetPosition" && self.setup_.seeksAfter > 0) {
      g_timeout_add(
          self.setup_.seeksAfter,
          [](gpointer call) -> gboolean {
            g_dbus_method_invocation_return_value(static_cast<GDBusMethodInvocation*>(call),
                                                  nullptr);
            return G_SOURCE_REMOVE;
          },
          invocation);
      return;
    }
    g_dbus_method_invocation_return_value(invocation, nullptr);
    if (name == "GoTo") self.goTo(id);
  }

  FakePlayerSetup setup_;
  int log_;
  GObjectPtr<GDBusConnection> bus_;
  std::size_t next_ = 0;
};

}  // namespace

}  // namespace vellora

int main(int count, char** arguments) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (count != 2) return 2;
  vellora::Service(vellora::fakePlayerSetup(arguments[1]), 3).run();
}
