// The same as placed_window_gtk3.cpp, by GTK 4.
#include <string_view>

#include <gtk/gtk.h>

namespace {

constexpr const char* style =
    "#marker { background: #ff0000; border: none; box-shadow: none; border-radius: 0; padding: 0; "
    "outline: none; } * { transition: none; }";

}  // namespace

int main(int count, char** values) {
  g_set_prgname("org.example.Placed");
  gtk_init();
  GtkCssProvider* const css = gtk_css_provider_new();
  gtk_css_provider_load_from_data(css, style, -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(css),
                                             900);
  GtkWidget* const window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Placed");
  gtk_window_set_default_size(GTK_WINDOW(window), 400, 300);
  if (count > 1 && std::string_view(values[1]) == "header") {
    gtk_window_set_titlebar(GTK_WINDOW(window), gtk_header_bar_new());
  }
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* const marker = gtk_button_new();
  gtk_accessible_update_property(GTK_ACCESSIBLE(marker), GTK_ACCESSIBLE_PROPERTY_LABEL, "marker",
                                 -1);
  gtk_widget_set_name(marker, "marker");
  gtk_widget_set_size_request(marker, 120, 60);
  gtk_widget_set_halign(marker, GTK_ALIGN_START);
  gtk_widget_set_margin_start(marker, 13);
  gtk_widget_set_margin_top(marker, 17);
  gtk_box_append(GTK_BOX(box), marker);
  gtk_window_set_child(GTK_WINDOW(window), box);
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  g_signal_connect_swapped(window, "destroy", G_CALLBACK(g_main_loop_quit), loop);
  gtk_window_present(GTK_WINDOW(window));
  g_main_loop_run(loop);
}
