// A small player on GTK 4, whose accessible objects do not know where their window is on the
// screen:
//
//   gtk4_player server|client
//
// decorated by the window manager, or by itself with a shadow around. Each row is of a colour of
// its own (row i: red 0xC0, green 0x10 + i, blue 0x40), so that a screenshot shows where it is.
#include <string>
#include <string_view>

#include <gtk/gtk.h>

namespace {

constexpr int rowCount = 5;
constexpr int width = 420;
constexpr int height = 460;

GtkWidget* newRow(int index) {
  const std::string name = "row" + std::to_string(index);
  const std::string text = "Line " + std::to_string(index) + " of the song";
  GtkWidget* const row = gtk_button_new_with_label(text.c_str());
  gtk_widget_set_name(row, name.c_str());
  gtk_widget_set_margin_bottom(row, 42);
  return row;
}

void paintRows() {
  std::string style;
  for (int i = 0; i < rowCount; ++i) {
    style += "#row" + std::to_string(i) + " { background: rgb(192, " + std::to_string(16 + i) +
             ", 64); border: none; border-radius: 0; box-shadow: none; color: white;"
             " padding: 0; }";
  }
  GtkCssProvider* const provider = gtk_css_provider_new();
  gtk_css_provider_load_from_data(provider, style.c_str(), -1);
  gtk_style_context_add_provider_for_display(
      gdk_display_get_default(), GTK_STYLE_PROVIDER(provider), GTK_STYLE_PROVIDER_PRIORITY_USER);
  g_object_unref(provider);
}

GtkWidget* newLyrics() {
  GtkWidget* const rows = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  for (int i = 0; i < rowCount; ++i) gtk_box_append(GTK_BOX(rows), newRow(i));
  GtkWidget* const view = gtk_scrolled_window_new();
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(view), rows);
  gtk_widget_set_vexpand(view, TRUE);
  gtk_accessible_update_property(GTK_ACCESSIBLE(view), GTK_ACCESSIBLE_PROPERTY_LABEL, "Lyrics", -1);
  return view;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  g_set_prgname("vellora-gtk4-player");
  gtk_init();
  paintRows();
  GtkWidget* const window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Sakura");
  gtk_window_set_default_size(GTK_WINDOW(window), width, height);
  if (std::string_view(argv[1]) == "client") {
    gtk_window_set_titlebar(GTK_WINDOW(window), gtk_header_bar_new());
  }
  GtkWidget* const content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  gtk_box_append(GTK_BOX(content), gtk_label_new("Sakura — Choir"));
  gtk_box_append(GTK_BOX(content), newLyrics());
  gtk_window_set_child(GTK_WINDOW(window), content);
  gtk_window_present(GTK_WINDOW(window));
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  g_main_loop_run(loop);
}
