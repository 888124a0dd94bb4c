// A small window of another program, until it is ended.
#include <gtk/gtk.h>

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "another program");
  gtk_window_set_default_size(GTK_WINDOW(window), 100, 40);
  gtk_widget_show_all(window);
  gtk_main();
}
