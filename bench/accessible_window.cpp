// A player's window with as many rows as it is told: the other side of the benchmark of the walk.
// Prints "ready" when it is shown; ends with its input.
//
//   accessible_window ROWS [HEIGHT]
#include <charconv>
#include <cstring>
#include <string>

#include <glib-unix.h>
#include <gtk/gtk.h>

namespace {

void nameElement(GtkWidget* widget, const char* name, const char* description, const char* id) {
  AtkObject* accessible = gtk_widget_get_accessible(widget);
  if (name) atk_object_set_name(accessible, name);
  if (description) atk_object_set_description(accessible, description);
  if (id) atk_object_set_accessible_id(accessible, id);
}

gboolean endOfInput(gint, GIOCondition, gpointer) {
  gtk_main_quit();
  return G_SOURCE_REMOVE;
}

gboolean sayReady(gpointer) {
  g_print("ready\n");
  return G_SOURCE_REMOVE;
}

}  // namespace

int main(int argc, char** argv) {
  int rows = 680;
  int height = 700;
  if (argc > 1) std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), rows);
  if (argc > 2) std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), height);
  g_set_prgname("accessible-window");
  gtk_init(&argc, &argv);

  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "Music");
  gtk_window_set_default_size(GTK_WINDOW(window), 1000, height);
  GtkWidget* columns = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_container_add(GTK_CONTAINER(window), columns);

  GtkWidget* side = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_container_add(GTK_CONTAINER(columns), side);
  GtkWidget* title = gtk_label_new("Song \xE2\x80\x94 Artist");
  nameElement(title, nullptr, nullptr, "Music.nowPlaying.title-Music.nowPlaying.subtitle");
  gtk_container_add(GTK_CONTAINER(side), title);
  for (const char* label : {"Previous", "Play", "Next"}) {
    gtk_container_add(GTK_CONTAINER(side), gtk_button_new_with_label(label));
  }

  GtkWidget* scroll = gtk_scrolled_window_new(nullptr, nullptr);
  nameElement(scroll, nullptr, "Lyrics", nullptr);
  gtk_widget_set_hexpand(scroll, TRUE);
  gtk_container_add(GTK_CONTAINER(columns), scroll);
  GtkWidget* lines = gtk_box_new(GTK_ORIENTATION_VERTICAL, 4);
  gtk_container_add(GTK_CONTAINER(scroll), lines);
  for (int i = 0; i < rows; ++i) {
    const std::string text = "Line number " + std::to_string(i) + " of a rather long song";
    gtk_container_add(GTK_CONTAINER(lines), gtk_button_new_with_label(text.c_str()));
  }
  gtk_widget_show_all(window);

  g_unix_fd_add(0, G_IO_HUP, endOfInput, nullptr);
  g_idle_add(sayReady, nullptr);
  gtk_main();
  return 0;
}
