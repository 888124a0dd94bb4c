#include "platform/linux/accessibility/changing_window.h"

#include <memory>

namespace vellora {

namespace {

GtkWidget* put(GtkWidget* parent, GtkWidget* child) {
  gtk_container_add(GTK_CONTAINER(parent), child);
  return child;
}

GtkWidget* putBox(GtkWidget* parent, GtkOrientation orientation) {
  return put(parent, gtk_box_new(orientation, 2));
}

void makeSide(ChangingWindow& made) {
  made.title = put(made.side, gtk_label_new("Song \xE2\x80\x94 Artist"));
  atk_object_set_accessible_id(gtk_widget_get_accessible(made.title),
                               "Music.nowPlaying.title-Music.nowPlaying.subtitle");
  made.time = put(made.side, gtk_label_new("0:00"));
  gtk_widget_set_tooltip_text(made.time, "a tooltip");
  made.slider = put(made.side, gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 200, 1));
  made.frame = put(made.side, gtk_frame_new("a frame"));
  made.entry = put(made.frame, gtk_entry_new());
  atk_object_set_name(gtk_widget_get_accessible(made.entry), "an entry");
  atk_object_set_description(gtk_widget_get_accessible(made.entry), "a place to write");
  made.expander = put(made.side, gtk_expander_new("more"));
  put(made.expander, gtk_label_new("in the expander"));
  made.combo = put(made.side, gtk_combo_box_text_new());
  for (const char* text : {"one", "two", "three"}) {
    gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(made.combo), text);
  }
  made.menuBar = put(made.side, gtk_menu_bar_new());
  for (const char* label : {"File", "View"}) {
    gtk_menu_shell_append(GTK_MENU_SHELL(made.menuBar), gtk_menu_item_new_with_label(label));
  }
  // In no list of children, but it signals once somebody has asked for it.
  gtk_widget_get_accessible(gtk_bin_get_child(GTK_BIN(childrenOf(made.menuBar).back())));
  made.statusBar = put(made.side, gtk_statusbar_new());
}

void makeRows(ChangingWindow& made) {
  atk_object_set_description(gtk_widget_get_accessible(made.scroll), "Lyrics");
  gtk_widget_set_vexpand(made.scroll, TRUE);
  gtk_widget_set_hexpand(made.scroll, TRUE);
  made.rows = putBox(made.scroll, GTK_ORIENTATION_VERTICAL);
  for (int i = 0; i < 5; ++i) {
    put(made.rows, gtk_button_new_with_label(("line " + std::to_string(i)).c_str()));
  }
  made.inner = putBox(made.rows, GTK_ORIENTATION_VERTICAL);
  for (int i = 0; i < 2; ++i) {
    GtkWidget* box = putBox(made.inner, GTK_ORIENTATION_HORIZONTAL);
    put(box, gtk_button_new_with_label(("nested " + std::to_string(i)).c_str()));
  }
}

// A button whose label stands in a box, as players with more than a text in a row make them.
GtkWidget* newButtonWithBox(const char* text) {
  GtkWidget* button = gtk_button_new();
  GtkWidget* box = putBox(button, GTK_ORIENTATION_HORIZONTAL);
  put(box, gtk_label_new(text));
  put(box, gtk_label_new("3:20"));
  return button;
}

void makeViews(ChangingWindow& made, GtkWidget* parent) {
  made.stack = put(parent, gtk_stack_new());
  made.notebook = put(parent, gtk_notebook_new());
  for (const char* name : {"first", "second"}) {
    gtk_stack_add_named(GTK_STACK(made.stack), gtk_button_new_with_label(name), name);
    gtk_notebook_append_page(GTK_NOTEBOOK(made.notebook), gtk_label_new(name), gtk_label_new(name));
  }
  made.listBox = put(parent, gtk_list_box_new());
  made.flowBox = put(parent, gtk_flow_box_new());
  for (const char* name : {"a", "b", "c"}) {
    put(made.listBox, newButtonWithBox(name));
    put(made.flowBox, gtk_label_new(name));
  }
  made.grid = put(parent, gtk_grid_new());
  atk_object_set_role(gtk_widget_get_accessible(made.grid), ATK_ROLE_UNKNOWN);
  gtk_grid_attach(GTK_GRID(made.grid), gtk_button_new_with_label("in the grid"), 0, 0, 1, 1);
  made.model.reset(gtk_list_store_new(1, G_TYPE_STRING));
  for (const char* text : {"cell one", "cell two"}) {
    gtk_list_store_insert_with_values(made.model.get(), nullptr, -1, 0, text, -1);
  }
  made.tree = put(parent, gtk_tree_view_new_with_model(GTK_TREE_MODEL(made.model.get())));
  gtk_tree_view_append_column(GTK_TREE_VIEW(made.tree),
                              gtk_tree_view_column_new_with_attributes(
                                  "column", gtk_cell_renderer_text_new(), "text", 0, nullptr));
  made.icons = put(parent, gtk_icon_view_new_with_model(GTK_TREE_MODEL(made.model.get())));
  gtk_icon_view_set_text_column(GTK_ICON_VIEW(made.icons), 0);
}

}  // namespace

unsigned pick(std::mt19937& random, std::size_t count) {
  return static_cast<unsigned>(random() % count);
}

std::string words(std::mt19937& random) {
  return "words " + std::to_string(pick(random, 1'000'000));
}

std::vector<GtkWidget*> childrenOf(GtkWidget* container) {
  const std::unique_ptr<GList, GRelease<g_list_free>> list(
      gtk_container_get_children(GTK_CONTAINER(container)));
  std::vector<GtkWidget*> children;
  for (const GList* item = list.get(); item != nullptr; item = item->next) {
    children.push_back(GTK_WIDGET(item->data));
  }
  return children;
}

GtkWidget* newRow(std::mt19937& random) {
  GtkWidget* row = gtk_button_new_with_label(words(random).c_str());
  gtk_widget_show_all(row);
  return row;
}

GtkWidget* newLabel(std::mt19937& random) {
  GtkWidget* label = gtk_label_new(words(random).c_str());
  gtk_widget_show(label);
  return label;
}

GtkWidget* anyRow(ChangingWindow& window, std::mt19937& random) {
  auto rows = childrenOf(window.rows);
  std::erase_if(rows, [](GtkWidget* row) { return !GTK_IS_BUTTON(row); });
  while (rows.size() < 3) rows.push_back(put(window.rows, newRow(random)));
  return rows[pick(random, rows.size())];
}

ChangingWindow makeChangingWindow() {
  ChangingWindow made;
  made.window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(made.window), "Music");
  gtk_window_set_default_size(GTK_WINDOW(made.window), 900, 600);
  made.header = gtk_header_bar_new();
  gtk_header_bar_set_title(GTK_HEADER_BAR(made.header), "Music");
  gtk_window_set_titlebar(GTK_WINDOW(made.window), made.header);
  GtkWidget* columns = putBox(made.window, GTK_ORIENTATION_HORIZONTAL);
  made.side = putBox(columns, GTK_ORIENTATION_VERTICAL);
  makeSide(made);
  made.scroll = put(columns, gtk_scrolled_window_new(nullptr, nullptr));
  makeRows(made);
  GtkWidget* views = putBox(columns, GTK_ORIENTATION_VERTICAL);
  makeViews(made, views);
  made.menu = gtk_menu_new();
  gtk_menu_attach_to_widget(GTK_MENU(made.menu), made.window, nullptr);
  gtk_menu_shell_append(GTK_MENU_SHELL(made.menu), gtk_menu_item_new_with_label("an item"));
  gtk_widget_show_all(made.menu);
  made.popover = gtk_popover_new(made.title);
  gtk_widget_show(put(made.popover, gtk_label_new("in the popover")));
  gtk_widget_show_all(made.window);
  return made;
}

}  // namespace vellora
