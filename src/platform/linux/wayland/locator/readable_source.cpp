#include "platform/linux/wayland/locator/readable_source.h"

#include <utility>

#include <glib-unix.h>

namespace vellora {

GSourcePtr whenReadable(int fd, std::function<void()> function) {
  using Function = std::function<void()>;
  GSourcePtr source(
      g_unix_fd_source_new(fd, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR)));
  const GUnixFDSourceFunc call = [](gint, GIOCondition, gpointer owned) noexcept -> gboolean {
    (*static_cast<Function*>(owned))();
    return G_SOURCE_CONTINUE;
  };
  g_source_set_callback(source.get(), G_SOURCE_FUNC(call), new Function(std::move(function)),
                        [](gpointer owned) { delete static_cast<Function*>(owned); });
  g_source_attach(source.get(), nullptr);
  return source;
}

}  // namespace vellora
