// Changes of containers and views of other kinds than boxes, and of how things look.
#include <array>
#include <string>

#include "platform/linux/accessibility/changing_window.h"

namespace vellora {

namespace {

using Kind = WindowOperation::Kind;

// The second child goes, if there is one.
void removeSecond(GtkWidget* container) {
  const auto children = childrenOf(container);
  if (children.size() > 1) gtk_widget_destroy(children[1]);
}

const std::array operations{
    WindowOperation{"stack-page", Kind::signalled,
                    [](auto& window, auto&) {
                      GtkStack* stack = GTK_STACK(window.stack);
                      const std::string name = gtk_stack_get_visible_child_name(stack);
                      gtk_stack_set_visible_child_name(stack, name == "first" ? "second" : "first");
                    }},
    WindowOperation{"stack-page-hidden", Kind::signalled,
                    [](auto& window, auto&) {
                      for (GtkWidget* page : childrenOf(window.stack)) gtk_widget_show(page);
                      gtk_widget_hide(gtk_stack_get_visible_child(GTK_STACK(window.stack)));
                    }},
    WindowOperation{"stack-page-added", Kind::unseen,
                    [](auto& window, auto& random) {
                      GtkWidget* page = newLabel(random);
                      gtk_container_add(GTK_CONTAINER(window.stack), page);
                    }},
    WindowOperation{"notebook-page", Kind::unseen,
                    [](auto& window, auto&) {
                      GtkNotebook* book = GTK_NOTEBOOK(window.notebook);
                      gtk_notebook_set_current_page(
                          book, gtk_notebook_get_current_page(book) == 0 ? 1 : 0);
                    }},
    WindowOperation{"notebook-page-added", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_notebook_insert_page(GTK_NOTEBOOK(window.notebook), newLabel(random),
                                               newLabel(random), static_cast<int>(pick(random, 3)));
                    }},
    WindowOperation{"notebook-page-removed", Kind::signalled,
                    [](auto& window, auto&) {
                      GtkNotebook* book = GTK_NOTEBOOK(window.notebook);
                      const int count = gtk_notebook_get_n_pages(book);
                      if (count > 2) gtk_notebook_remove_page(book, count - 1);
                    }},
    WindowOperation{"notebook-page-moved", Kind::unsignalled,
                    [](auto& window, auto&) {
                      GtkNotebook* book = GTK_NOTEBOOK(window.notebook);
                      gtk_notebook_reorder_child(book, gtk_notebook_get_nth_page(book, 0), 1);
                    }},
    WindowOperation{"notebook-tabs-shown-or-hidden", Kind::unsignalled,
                    [](auto& window, auto&) {
                      GtkNotebook* book = GTK_NOTEBOOK(window.notebook);
                      gtk_notebook_set_show_tabs(book, !gtk_notebook_get_show_tabs(book));
                    }},
    WindowOperation{"list-row-added", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_list_box_insert(GTK_LIST_BOX(window.listBox), newLabel(random),
                                          static_cast<int>(pick(random, 3)));
                    }},
    WindowOperation{"list-row-removed", Kind::signalled,
                    [](auto& window, auto&) { removeSecond(window.listBox); }},
    WindowOperation{"list-sorted", Kind::signalled,
                    [](auto& window, auto& random) {
                      while (childrenOf(window.listBox).size() < 3) {
                        gtk_container_add(GTK_CONTAINER(window.listBox), newLabel(random));
                      }
                      const auto last = childrenOf(window.listBox).back();
                      gtk_list_box_set_sort_func(
                          GTK_LIST_BOX(window.listBox),
                          [](GtkListBoxRow* a, GtkListBoxRow* b, gpointer first) {
                            return static_cast<int>(b == first) - static_cast<int>(a == first);
                          },
                          last, nullptr);
                    }},
    WindowOperation{"list-header", Kind::unseen,
                    [](auto& window, auto&) {
                      gtk_list_box_set_header_func(
                          GTK_LIST_BOX(window.listBox),
                          [](GtkListBoxRow* row, GtkListBoxRow*, gpointer) {
                            GtkWidget* header = gtk_label_new("a heading");
                            gtk_widget_show(header);
                            gtk_list_box_row_set_header(row, header);
                          },
                          nullptr, nullptr);
                    }},
    WindowOperation{"flow-child-added", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_flow_box_insert(GTK_FLOW_BOX(window.flowBox), newLabel(random),
                                          static_cast<int>(pick(random, 3)));
                    }},
    WindowOperation{"flow-child-removed", Kind::signalled,
                    [](auto& window, auto&) { removeSecond(window.flowBox); }},
    WindowOperation{"model-row-added", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_list_store_insert_with_values(window.model.get(), nullptr,
                                                        static_cast<int>(pick(random, 3)), 0,
                                                        words(random).c_str(), -1);
                    }},
    WindowOperation{"model-row-removed", Kind::signalled,
                    [](auto& window, auto&) {
                      GtkTreeIter first;
                      if (gtk_tree_model_get_iter_first(GTK_TREE_MODEL(window.model.get()),
                                                        &first)) {
                        gtk_list_store_remove(window.model.get(), &first);
                      }
                    }},
    WindowOperation{
        "model-row-text", Kind::signalled,
        [](auto& window, auto& random) {
          GtkTreeIter first;
          if (gtk_tree_model_get_iter_first(GTK_TREE_MODEL(window.model.get()), &first)) {
            gtk_list_store_set(window.model.get(), &first, 0, words(random).c_str(), -1);
          }
        }},
    WindowOperation{"model-cleared", Kind::signalled,
                    [](auto& window, auto&) { gtk_list_store_clear(window.model.get()); }},
    WindowOperation{"column-title", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_tree_view_column_set_title(
                          gtk_tree_view_get_column(GTK_TREE_VIEW(window.tree), 0),
                          words(random).c_str());
                    }},
    WindowOperation{"scrolled", Kind::unseen,
                    [](auto& window, auto& random) {
                      gtk_adjustment_set_value(
                          gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(window.scroll)),
                          pick(random, 100));
                    }},
    WindowOperation{"scroll-bars", Kind::unseen,
                    [](auto& window, auto& random) {
                      gtk_scrolled_window_set_policy(
                          GTK_SCROLLED_WINDOW(window.scroll), GTK_POLICY_AUTOMATIC,
                          pick(random, 2) == 0 ? GTK_POLICY_ALWAYS : GTK_POLICY_NEVER);
                    }},
    WindowOperation{"resized", Kind::unseen,
                    [](auto& window, auto& random) {
                      gtk_window_resize(GTK_WINDOW(window.window),
                                        800 + static_cast<int>(pick(random, 200)),
                                        500 + static_cast<int>(pick(random, 200)));
                    }},
    WindowOperation{"sensitive", Kind::unseen,
                    [](auto& window, auto&) {
                      gtk_widget_set_sensitive(window.side, !gtk_widget_get_sensitive(window.side));
                    }},
    WindowOperation{"focus", Kind::unseen,
                    [](auto& window, auto& random) {
                      gtk_widget_grab_focus(pick(random, 2) == 0 ? window.entry : window.slider);
                    }},
    WindowOperation{"style", Kind::unseen,
                    [](auto& window, auto& random) {
                      GtkStyleContext* style = gtk_widget_get_style_context(window.rows);
                      if (pick(random, 2) == 0) {
                        gtk_style_context_add_class(style, "view");
                      } else {
                        gtk_style_context_remove_class(style, "view");
                      }
                    }},
};

}  // namespace

std::span<const WindowOperation> viewOperations() { return operations; }

}  // namespace vellora
