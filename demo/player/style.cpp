#include "player/style.h"

#include <gtk/gtk.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora::demo {
namespace {

// A caption's text begins 11 pixels right of its row's left edge: so does the row's own.
constexpr const char* styleSheet = R"css(
* { font-family: "Inter", "Noto Sans", "Noto Sans CJK TC", "Noto Sans Arabic", sans-serif; }
window { background-color: #16151d; color: #f4f2fa; }
.sidebar { background-color: #1e1c27; border-right: 1px solid #2b2836; }
.heading { color: #8d88a3; font-size: 11px; font-weight: 700; letter-spacing: 1px; }
.sidebar button { background: none; border: none; box-shadow: none; border-radius: 8px;
  padding: 7px 10px; color: #e9e6f4; text-shadow: none; }
.sidebar button:hover { background-color: #2a2736; }
.sidebar button.current { background-color: #fa3b58; color: #ffffff; }
.sidebar .song-title { font-size: 13px; font-weight: 600; }
.sidebar .song-artist { font-size: 11px; color: #9a95b0; }
.sidebar button.current .song-artist { color: #ffdbe1; }
.header { background-color: #1b1924; border-bottom: 1px solid #2b2836; }
.artwork { border-radius: 8px; color: #ffffff; font-size: 24px;
  background-image: linear-gradient(135deg, #fa3b58, #7b3ff2); }
.now-playing { font-size: 16px; font-weight: 600; }
.album, .time { font-size: 12px; color: #9a95b0; }
.transport { background: none; border: none; box-shadow: none; border-radius: 20px; padding: 0;
  min-width: 40px; min-height: 40px; color: #f4f2fa; }
.transport:hover { background-color: #2d2a3a; }
.lyrics-switch { background: #2a2736; border: none; box-shadow: none; border-radius: 8px;
  padding: 4px 12px; color: #cfcade; text-shadow: none; font-size: 12px; }
.lyrics-switch.on { background: #fa3b58; color: #ffffff; }
scale trough { background-color: #33303f; border: none; min-height: 4px; border-radius: 2px; }
scale highlight { background-color: #fa3b58; border: none; min-height: 4px; border-radius: 2px; }
scale slider { background: #ffffff; border: none; box-shadow: none; min-width: 12px;
  min-height: 12px; margin: -4px; border-radius: 6px; }
.lyrics, .lyrics viewport, .empty { background-image: linear-gradient(to bottom, #211c31, #141320); }
.lyrics viewport { background: none; }
.lyrics button { background: none; border: none; box-shadow: none; border-radius: 10px;
  padding: 3px 11px; color: rgba(244, 242, 250, 0.34); text-shadow: none;
  font-size: 25px; font-weight: 700; transition: color 250ms ease-out; }
.lyrics button:hover { background-color: rgba(255, 255, 255, 0.05); }
.lyrics button.current { color: #ffffff; }
.empty { color: #6f6a85; font-size: 18px; }
)css";

}  // namespace

void applyStyle() {
  g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", TRUE, nullptr);
  const GObjectPtr<GtkCssProvider> provider(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.get(), styleSheet, -1, nullptr);
  gtk_style_context_add_provider_for_screen(gdk_screen_get_default(),
                                            GTK_STYLE_PROVIDER(provider.get()),
                                            GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace vellora::demo
