#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/linux/glib/session_bus.h"

namespace vellora {

// Takes opened URLs on the session bus, as open_interface.h names them. Where another instance has
// the name, this one waits in the bus's queue for it and takes nothing until then. Main thread.
class OpenedUrls {
 public:
  using Open = std::function<void(const std::vector<std::string>& urls)>;

  // `open` is called from the event loop.
  OpenedUrls(SessionBus bus, Open open);
  ~OpenedUrls();
  OpenedUrls(const OpenedUrls&) = delete;
  OpenedUrls& operator=(const OpenedUrls&) = delete;

 private:
  static void called(GDBusConnection* bus, const gchar* sender, const gchar* path,
                     const gchar* interface, const gchar* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self) noexcept;

  SessionBus bus_;
  Open open_;
  guint object_ = 0;
  guint name_ = 0;
};

}  // namespace vellora
