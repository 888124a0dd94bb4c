// Apart from everything else, since Xlib's headers define macros with everyday names.
#include "player/present_window.h"

#include <gdk/gdkx.h>

namespace vellora::demo {

void presentWindow(GtkWidget* window) {
  GdkWindow* surface = gtk_widget_get_window(window);
  const guint32 time = GDK_IS_X11_WINDOW(surface) ? gdk_x11_get_server_time(surface)
                                                  : static_cast<guint32>(GDK_CURRENT_TIME);
  gtk_window_present_with_time(GTK_WINDOW(window), time);
}

}  // namespace vellora::demo
