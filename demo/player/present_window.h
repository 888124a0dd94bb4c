#pragma once

#include <gtk/gtk.h>

namespace vellora::demo {

// Brings a shown window to the front and gives it the focus, although no input event asked for it:
// on X11 with the server's own time, so that window managers do not hold it back.
void presentWindow(GtkWidget* window);

}  // namespace vellora::demo
