// Changes of what an object is called, described or named by, and of its role.
#include <array>
#include <string>

#include "platform/linux/accessibility/changing_window.h"

namespace vellora {

namespace {

using Kind = WindowOperation::Kind;

AtkObject* object(GtkWidget* widget) { return gtk_widget_get_accessible(widget); }

void setLabel(GtkWidget* label, std::mt19937& random) {
  gtk_label_set_text(GTK_LABEL(label), words(random).c_str());
}

// The label of a button that was made with one.
GtkWidget* labelIn(GtkWidget* button) { return gtk_bin_get_child(GTK_BIN(button)); }

const std::array operations{
    WindowOperation{"title-text", Kind::signalled,
                    [](auto& window, auto& random) { setLabel(window.title, random); }},
    WindowOperation{"title-empty", Kind::signalled,
                    [](auto& window, auto& random) {
                      const bool isEmpty = *gtk_label_get_text(GTK_LABEL(window.title)) == '\0';
                      gtk_label_set_text(GTK_LABEL(window.title),
                                         isEmpty ? words(random).c_str() : "");
                    }},
    WindowOperation{"title-markup", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_label_set_markup(GTK_LABEL(window.title),
                                           ("<b>" + words(random) + "</b>").c_str());
                    }},
    WindowOperation{"title-link", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_label_set_markup(GTK_LABEL(window.title),
                                           ("<a href='x:'>" + words(random) + "</a> by").c_str());
                    }},
    WindowOperation{"tick", Kind::signalled,
                    [](auto& window, auto& random) { setLabel(window.time, random); }},
    WindowOperation{"slider", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      gtk_range_set_value(GTK_RANGE(window.slider), pick(random, 200));
                    }},
    WindowOperation{"button-label", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_button_set_label(GTK_BUTTON(anyRow(window, random)),
                                           words(random).c_str());
                    }},
    WindowOperation{"button-child-text", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkWidget* label = labelIn(anyRow(window, random));
                      if (GTK_IS_LABEL(label)) setLabel(label, random);
                    }},
    WindowOperation{"button-child-removed", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkWidget* button = anyRow(window, random);
                      if (GtkWidget* child = labelIn(button)) gtk_widget_destroy(child);
                    }},
    WindowOperation{"button-child-replaced", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkWidget* button = anyRow(window, random);
                      if (GtkWidget* child = labelIn(button)) gtk_widget_destroy(child);
                      gtk_container_add(GTK_CONTAINER(button),
                                        gtk_label_new(words(random).c_str()));
                      gtk_widget_show_all(button);
                    }},
    WindowOperation{"list-row-text", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkWidget* row = childrenOf(window.listBox).front();
                      GtkWidget* button = childrenOf(row).front();
                      if (!GTK_IS_BUTTON(button)) return;
                      setLabel(childrenOf(labelIn(button)).front(), random);
                    }},
    WindowOperation{"name", Kind::signalled,
                    [](auto& window, auto& random) {
                      atk_object_set_name(object(window.entry), words(random).c_str());
                    }},
    WindowOperation{"row-named-first", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      for (GtkWidget* row : childrenOf(window.rows)) {
                        if (object(row)->name) continue;
                        return atk_object_set_name(object(row), words(random).c_str());
                      }
                    }},
    WindowOperation{"name-emptied", Kind::signalled,
                    [](auto& window, auto&) { atk_object_set_name(object(window.entry), ""); }},
    WindowOperation{"description", Kind::signalled,
                    [](auto& window, auto& random) {
                      atk_object_set_description(object(window.entry), words(random).c_str());
                    }},
    WindowOperation{"row-described-first", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      for (GtkWidget* row : childrenOf(window.rows)) {
                        if (object(row)->description) continue;
                        return atk_object_set_description(object(row), words(random).c_str());
                      }
                    }},
    WindowOperation{"lyrics-label", Kind::signalled,
                    [](auto& window, auto&) {
                      const bool isLabelled = object(window.scroll)->description[0] == 'L';
                      atk_object_set_description(object(window.scroll),
                                                 isLabelled ? "Up next" : "Lyrics");
                    }},
    WindowOperation{"identifier", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      atk_object_set_accessible_id(object(window.time), words(random).c_str());
                    }},
    WindowOperation{"role", Kind::signalled,
                    [](auto& window, auto& random) {
                      constexpr std::array roles{ATK_ROLE_PANEL, ATK_ROLE_PUSH_BUTTON,
                                                 ATK_ROLE_SCROLL_PANE, ATK_ROLE_LABEL};
                      atk_object_set_role(object(window.inner), roles[pick(random, roles.size())]);
                    }},
    WindowOperation{
        "role-from-unknown", Kind::unsignalled,
        [](auto& window, auto&) { atk_object_set_role(object(window.grid), ATK_ROLE_LABEL); }},
    WindowOperation{"tooltip", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_widget_set_tooltip_text(window.time, words(random).c_str());
                    }},
    WindowOperation{"tooltip-removed", Kind::unsignalled,
                    [](auto& window, auto&) { gtk_widget_set_tooltip_text(window.time, nullptr); }},
    WindowOperation{"frame-label", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_frame_set_label(GTK_FRAME(window.frame), words(random).c_str());
                    }},
    WindowOperation{"frame-label-text", Kind::signalled,
                    [](auto& window, auto& random) {
                      setLabel(gtk_frame_get_label_widget(GTK_FRAME(window.frame)), random);
                    }},
    WindowOperation{"expander-label", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_expander_set_label(GTK_EXPANDER(window.expander), words(random).c_str());
                    }},
    WindowOperation{"expander-child-text", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      setLabel(gtk_expander_get_label_widget(GTK_EXPANDER(window.expander)),
                               random);
                    }},
    WindowOperation{"combo", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_combo_box_set_active(GTK_COMBO_BOX(window.combo),
                                               static_cast<int>(pick(random, 3)));
                    }},
    WindowOperation{"combo-model", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkTreeModel* model = gtk_combo_box_get_model(GTK_COMBO_BOX(window.combo));
                      GtkTreeIter iter;
                      if (!gtk_tree_model_get_iter_first(model, &iter)) return;
                      gtk_list_store_set(GTK_LIST_STORE(model), &iter, 0, words(random).c_str(),
                                         -1);
                    }},
    WindowOperation{"menu-item-label", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_menu_item_set_label(GTK_MENU_ITEM(childrenOf(window.menuBar).front()),
                                              words(random).c_str());
                    }},
    WindowOperation{"menu-item-child-text", Kind::signalled,
                    [](auto& window, auto& random) {
                      setLabel(labelIn(childrenOf(window.menuBar).back()), random);
                    }},
    WindowOperation{"status", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_statusbar_push(GTK_STATUSBAR(window.statusBar), 1, words(random).c_str());
                    }},
    WindowOperation{"window-title", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_window_set_title(GTK_WINDOW(window.window), words(random).c_str());
                    }},
    WindowOperation{
        "window-title-removed", Kind::unsignalled,
        [](auto& window, auto&) { gtk_window_set_title(GTK_WINDOW(window.window), nullptr); }},
    WindowOperation{"header-title", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_header_bar_set_title(GTK_HEADER_BAR(window.header),
                                               words(random).c_str());
                    }},
    WindowOperation{"header-subtitle", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_header_bar_set_subtitle(GTK_HEADER_BAR(window.header),
                                                  words(random).c_str());
                    }},
    WindowOperation{"entry-text", Kind::unseen,
                    [](auto& window, auto& random) {
                      gtk_entry_set_text(GTK_ENTRY(window.entry), words(random).c_str());
                    }},
    WindowOperation{"tab-label", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkNotebook* book = GTK_NOTEBOOK(window.notebook);
                      gtk_notebook_set_tab_label_text(book, gtk_notebook_get_nth_page(book, 0),
                                                      words(random).c_str());
                    }},
    WindowOperation{"tab-child-text", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkNotebook* book = GTK_NOTEBOOK(window.notebook);
                      GtkWidget* label =
                          gtk_notebook_get_tab_label(book, gtk_notebook_get_nth_page(book, 0));
                      if (GTK_IS_LABEL(label)) setLabel(label, random);
                    }},
};

}  // namespace

std::span<const WindowOperation> textOperations() { return operations; }

}  // namespace vellora
