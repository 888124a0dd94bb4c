#include "platform/linux/loop/opened_urls.h"

#include <utility>

#include "platform/linux/open/open_interface.h"

namespace vellora {
namespace {

constexpr const char* introspection =
    "<node>"
    "  <interface name='org.vellora.Vellora'>"
    "    <method name='Open'><arg name='urls' type='as' direction='in'/></method>"
    "  </interface>"
    "</node>";

}  // namespace

OpenedUrls::OpenedUrls(SessionBus bus, Open open) : bus_(std::move(bus)), open_(std::move(open)) {
  const GNodeInfoPtr node(g_dbus_node_info_new_for_xml(introspection, nullptr));
  static constexpr GDBusInterfaceVTable calls{&OpenedUrls::called, nullptr, nullptr, {}};
  object_ = g_dbus_connection_register_object(
      bus_.get(), OpenInterface::objectPath,
      g_dbus_node_info_lookup_interface(node.get(), OpenInterface::interfaceName), &calls, this,
      nullptr, nullptr);
  name_ =
      g_bus_own_name_on_connection(bus_.get(), OpenInterface::busName, G_BUS_NAME_OWNER_FLAGS_NONE,
                                   nullptr, nullptr, nullptr, nullptr);
}

OpenedUrls::~OpenedUrls() {
  g_bus_unown_name(name_);
  if (object_ != 0) g_dbus_connection_unregister_object(bus_.get(), object_);
}

void OpenedUrls::called(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                        GVariant* arguments, GDBusMethodInvocation* invocation,
                        gpointer self) noexcept {
  std::vector<std::string> urls;
  const GVariantPtr list(g_variant_get_child_value(arguments, 0));
  for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
    const GVariantPtr url(g_variant_get_child_value(list.get(), i));
    urls.emplace_back(g_variant_get_string(url.get(), nullptr));
  }
  // Answered first: what the URLs lead to may take a while, or end the program.
  g_dbus_method_invocation_return_value(invocation, nullptr);
  static_cast<OpenedUrls*>(self)->open_(urls);
}

}  // namespace vellora
