// Shows a menu or a tooltip of GTK's at a place of the screen, all of one colour, until it is
// ended:
//
//   desk_popup menu|tooltip X Y RRGGBB
//
// The menu stands with its corner at that place. The tooltip belongs to a small window there, which
// takes no focus, and comes when the pointer rests on that.
#include <cstdlib>
#include <string>

#include <gtk/gtk.h>

namespace {

constexpr int smallSize = 12;

void paintEverythingIn(const std::string& color) {
  const std::string style =
      "menu, menuitem, menuitem *, tooltip, tooltip * { background: #" + color + "; color: #" +
      color +
      "; border: none; border-radius: 0; box-shadow: none; text-shadow: none; padding: 4px;"
      " margin: 0; }"
      // A compositor's tooltips have a see-through margin for their shadow.
      "tooltip.background decoration, tooltip.csd { margin: 0; border: none; box-shadow: none; }";
  GtkCssProvider* const provider = gtk_css_provider_new();
  gtk_css_provider_load_from_data(provider, style.c_str(), -1, nullptr);
  gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider),
                                            GTK_STYLE_PROVIDER_PRIORITY_USER);
  g_object_unref(provider);
}

void showMenu(int x, int y) {
  GtkWidget* const menu = gtk_menu_new();
  for (const char* label : {"One entry of a menu", "Another entry", "The last entry"}) {
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), gtk_menu_item_new_with_label(label));
  }
  gtk_widget_show_all(menu);
  const GdkRectangle corner{x, y, 1, 1};
  gtk_menu_popup_at_rect(GTK_MENU(menu), gdk_get_default_root_window(), &corner,
                         GDK_GRAVITY_NORTH_WEST, GDK_GRAVITY_NORTH_WEST, nullptr);
}

void showWindowWithTooltip(int x, int y) {
  GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_type_hint(GTK_WINDOW(window), GDK_WINDOW_TYPE_HINT_DOCK);
  gtk_window_set_accept_focus(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), smallSize, smallSize);
  gtk_widget_set_tooltip_text(window, "A tooltip with some words in it");
  gtk_widget_add_events(window, GDK_POINTER_MOTION_MASK);
  gtk_window_move(GTK_WINDOW(window), x, y);
  gtk_widget_show_all(window);
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  if (argc != 5) return 2;
  const int x = std::atoi(argv[2]);
  const int y = std::atoi(argv[3]);
  paintEverythingIn(argv[4]);
  if (std::string(argv[1]) == "menu") {
    showMenu(x, y);
  } else {
    showWindowWithTooltip(x, y);
  }
  gtk_main();
}
