// A window of GTK 3 with a red button "marker" in it, whose place can so be seen and be asked for.
// The argument "header" gives it a title bar of its own, and so a shadow.
#include <string_view>

#include <gtk/gtk.h>

namespace {

constexpr const char* style =
    "#marker { background: #ff0000; border: none; box-shadow: none; border-radius: 0; padding: 0; }"
    "* { transition: none; }";

}  // namespace

int main(int count, char** values) {
  g_set_prgname("org.example.Placed");
  gtk_init(&count, &values);
  gdk_set_program_class("org.example.Placed");
  GtkCssProvider* const css = gtk_css_provider_new();
  gtk_css_provider_load_from_data(css, style, -1, nullptr);
  gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(css), 900);
  GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "Placed");
  gtk_window_set_default_size(GTK_WINDOW(window), 400, 300);
  if (count > 1 && std::string_view(values[1]) == "header") {
    GtkWidget* const bar = gtk_header_bar_new();
    gtk_header_bar_set_show_close_button(GTK_HEADER_BAR(bar), TRUE);
    gtk_window_set_titlebar(GTK_WINDOW(window), bar);
  }
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* const marker = gtk_button_new();
  atk_object_set_name(gtk_widget_get_accessible(marker), "marker");
  gtk_widget_set_name(marker, "marker");
  gtk_widget_set_size_request(marker, 120, 60);
  gtk_widget_set_halign(marker, GTK_ALIGN_START);
  gtk_widget_set_margin_start(marker, 13);
  gtk_widget_set_margin_top(marker, 17);
  gtk_container_add(GTK_CONTAINER(box), marker);
  gtk_container_add(GTK_CONTAINER(window), box);
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  gtk_widget_show_all(window);
  gtk_main();
}
