#include "platform/linux/glib/event_source.h"

#include <utility>

namespace vellora {

GSourcePtr attachSource(GSource* source, std::function<void()> function, int priority,
                        GMainContext* context) {
  using Function = std::function<void()>;
  g_source_set_priority(source, priority);
  g_source_set_callback(
      source,
      [](gpointer owned) noexcept -> gboolean {
        (*static_cast<Function*>(owned))();
        return G_SOURCE_CONTINUE;
      },
      new Function(std::move(function)),
      [](gpointer owned) { delete static_cast<Function*>(owned); });
  g_source_attach(source, context);
  return GSourcePtr(source);
}

}  // namespace vellora
