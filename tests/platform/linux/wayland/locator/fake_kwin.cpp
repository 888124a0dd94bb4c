#include "platform/linux/wayland/locator/fake_kwin.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

#include "platform/linux/wayland/locator/kwin_script.h"
#include "support/temporary_folder.h"

namespace vellora {

namespace {

constexpr const char* introspection =
    "<node>"
    "  <interface name='org.kde.kwin.Scripting'>"
    "    <method name='loadScript'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "      <arg type='i' direction='out'/></method>"
    "    <method name='unloadScript'><arg type='s' direction='in'/><arg type='b' direction='out'/>"
    "    </method>"
    "    <method name='isScriptLoaded'><arg type='s' direction='in'/>"
    "      <arg type='b' direction='out'/></method>"
    "    <method name='start'/>"
    "  </interface>"
    "  <interface name='org.kde.kwin.Script'><method name='run'/></interface>"
    "</node>";

}  // namespace

FakeKWin::FakeKWin(GObjectPtr<GDBusConnection> bus) : bus_(std::move(bus)) {
  const GNodeInfoPtr node(g_dbus_node_info_new_for_xml(introspection, nullptr));
  static constexpr GDBusInterfaceVTable vtable{&FakeKWin::called, nullptr, nullptr, {}};
  objects_.push_back(g_dbus_connection_register_object(
      bus_.get(), "/Scripting", node->interfaces[0], &vtable, this, nullptr, nullptr));
  objects_.push_back(g_dbus_connection_register_object(bus_.get(), "/7", node->interfaces[1],
                                                       &vtable, this, nullptr, nullptr));
  name_ = g_bus_own_name_on_connection(bus_.get(), "org.kde.KWin", G_BUS_NAME_OWNER_FLAGS_NONE,
                                       nullptr, nullptr, nullptr, nullptr);
}

FakeKWin::~FakeKWin() {
  g_bus_unown_name(name_);
  for (const guint object : objects_) g_dbus_connection_unregister_object(bus_.get(), object);
  g_dbus_connection_flush_sync(bus_.get(), nullptr, nullptr);
}

void FakeKWin::report(const std::string& json, GDBusConnection* from) const {
  g_dbus_connection_call(from, loader_.c_str(), KWinReportInterface::objectPath,
                         KWinReportInterface::interfaceName, KWinReportInterface::reportMethod,
                         g_variant_new("(s)", json.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                         nullptr, nullptr, nullptr);
}

void FakeKWin::called(GDBusConnection*, const gchar* sender, const gchar*, const gchar*,
                      const gchar* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                      gpointer data) noexcept {
  auto& self = *static_cast<FakeKWin*>(data);
  if (std::string(method) == "loadScript") self.loader_ = sender;
  GVariant* const answer = self.carryOut(method, arguments);
  if (self.answers) return g_dbus_method_invocation_return_value(invocation, answer);
  if (answer != nullptr) ownVariant(answer);
  g_object_unref(invocation);
}

GVariant* FakeKWin::carryOut(const std::string& method, GVariant* arguments) {
  if (method == "run" || method == "start") {
    ++(method == "run" ? runs : starts);
    calls.push_back(method);
    return nullptr;
  }
  const char* first = nullptr;
  const char* name = nullptr;
  if (method == "loadScript") {
    g_variant_get(arguments, "(&s&s)", &first, &name);
  } else {
    g_variant_get(arguments, "(&s)", &name);
  }
  calls.push_back(method + " " + name);
  const bool isLoaded = std::ranges::count(loaded, std::string(name)) > 0;
  if (method == "isScriptLoaded") return g_variant_new("(b)", isLoaded ? TRUE : FALSE);
  if (method == "unloadScript") {
    std::erase(loaded, std::string(name));
    return g_variant_new("(b)", isLoaded ? TRUE : FALSE);
  }
  if (isLoaded || !takesScripts) return g_variant_new("(i)", -1);
  path = first;
  script = readText(path);
  struct stat status {};
  if (stat(first, &status) == 0) fileMode = static_cast<int>(status.st_mode & 07777);
  loaded.emplace_back(name);
  return g_variant_new("(i)", 7);
}

std::string kwinWindow(int process, const std::string& name, bool isActive,
                       const std::string& frame, const std::string& buffer,
                       const std::string& more) {
  return R"({"process":)" + std::to_string(process) + R"(,"class":")" + name + R"(","active":)" +
         (isActive ? "true" : "false") + R"(,"frame":)" + frame + R"(,"buffer":)" + buffer + "," +
         more + "}";
}

}  // namespace vellora
