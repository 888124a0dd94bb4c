// Changes of what stands in a box, and of the windows.
#include <array>
#include <memory>

#include "platform/linux/accessibility/changing_window.h"

namespace vellora {

namespace {

using Kind = WindowOperation::Kind;

void removeRows(ChangingWindow& window) {
  for (GtkWidget* row : childrenOf(window.rows)) {
    if (row != window.inner) gtk_widget_destroy(row);
  }
}

GtkWidget* newWindow(std::mt19937& random) {
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "second");
  gtk_window_set_focus_on_map(GTK_WINDOW(window), pick(random, 2) == 0);
  gtk_container_add(GTK_CONTAINER(window), newRow(random));
  return window;
}

void popUpOrDown(ChangingWindow& window) {
  GtkMenu* menu = GTK_MENU(window.menu);
  if (gtk_widget_get_mapped(window.menu)) return gtk_menu_popdown(menu);
  // As if the pointer had asked for it, which GTK wants to know.
  const std::unique_ptr<GdkEvent, GRelease<gdk_event_free>> press(gdk_event_new(GDK_BUTTON_PRESS));
  press->any.window = shareObject(gtk_widget_get_window(window.window)).release();
  gdk_event_set_device(
      press.get(),
      gdk_seat_get_pointer(gdk_display_get_default_seat(gtk_widget_get_display(window.window))));
  gtk_menu_popup_at_widget(menu, window.time, GDK_GRAVITY_SOUTH, GDK_GRAVITY_NORTH, press.get());
}

const std::array operations{
    WindowOperation{"row-added", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_container_add(GTK_CONTAINER(window.rows), newRow(random));
                    }},
    WindowOperation{"row-packed", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      gtk_box_pack_start(GTK_BOX(window.rows), newRow(random), FALSE, FALSE, 0);
                    }},
    WindowOperation{"packed-row-taken-out", Kind::unsignalled,
                    [](auto& window, auto&) {
                      const auto row = shareObject(childrenOf(window.rows).back());
                      gtk_container_remove(GTK_CONTAINER(window.rows), row.get());
                      g_object_set_data_full(G_OBJECT(window.window), "taken out",
                                             shareObject(row.get()).release(), g_object_unref);
                    }},
    WindowOperation{"row-inserted", Kind::signalled,
                    [](auto& window, auto& random) {
                      GtkWidget* row = newRow(random);
                      gtk_container_add(GTK_CONTAINER(window.rows), row);
                      gtk_box_reorder_child(GTK_BOX(window.rows), row, 0);
                    }},
    WindowOperation{"row-moved", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkWidget* row = anyRow(window, random);
                      gtk_box_reorder_child(GTK_BOX(window.rows), row,
                                            row == childrenOf(window.rows).front() ? 2 : 0);
                    }},
    WindowOperation{
        "row-pack-type", Kind::unsignalled,
        [](auto& window, auto& random) {
          GtkWidget* row = anyRow(window, random);
          GtkPackType type = GTK_PACK_START;
          gtk_container_child_get(GTK_CONTAINER(window.rows), row, "pack-type", &type, nullptr);
          gtk_container_child_set(GTK_CONTAINER(window.rows), row, "pack-type",
                                  type == GTK_PACK_START ? GTK_PACK_END : GTK_PACK_START, nullptr);
        }},
    WindowOperation{"row-destroyed", Kind::signalled,
                    [](auto& window, auto& random) { gtk_widget_destroy(anyRow(window, random)); }},
    WindowOperation{"row-removed", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_container_remove(GTK_CONTAINER(window.rows), anyRow(window, random));
                    }},
    WindowOperation{"row-removed-and-kept", Kind::signalled,
                    [](auto& window, auto& random) {
                      const auto row = shareObject(anyRow(window, random));
                      gtk_container_remove(GTK_CONTAINER(window.rows), row.get());
                      g_object_set_data_full(G_OBJECT(window.window), "kept",
                                             shareObject(row.get()).release(), g_object_unref);
                    }},
    WindowOperation{"row-moved-into-box", Kind::signalled,
                    [](auto& window, auto& random) {
                      const auto row = shareObject(anyRow(window, random));
                      gtk_container_remove(GTK_CONTAINER(window.rows), row.get());
                      gtk_container_add(GTK_CONTAINER(window.inner), row.get());
                    }},
    WindowOperation{"row-moved-out-of-box", Kind::signalled,
                    [](auto& window, auto& random) {
                      gtk_container_add(GTK_CONTAINER(window.inner), newRow(random));
                      const auto row = shareObject(childrenOf(window.inner).front());
                      gtk_container_remove(GTK_CONTAINER(window.inner), row.get());
                      gtk_box_pack_start(GTK_BOX(window.rows), row.get(), FALSE, FALSE, 0);
                    }},
    WindowOperation{"row-shown-or-hidden", Kind::unseen,
                    [](auto& window, auto& random) {
                      GtkWidget* row = anyRow(window, random);
                      gtk_widget_set_visible(row, !gtk_widget_get_visible(row));
                    }},
    WindowOperation{"song-changed", Kind::signalled,
                    [](auto& window, auto& random) {
                      removeRows(window);
                      for (unsigned i = 5 + pick(random, 4); i > 0; --i) {
                        gtk_container_add(GTK_CONTAINER(window.rows), newRow(random));
                      }
                    }},
    WindowOperation{"song-packed", Kind::signalled,
                    [](auto& window, auto& random) {
                      removeRows(window);
                      for (unsigned i = 5 + pick(random, 4); i > 0; --i) {
                        gtk_box_pack_start(GTK_BOX(window.rows), newRow(random), FALSE, FALSE, 0);
                      }
                    }},
    WindowOperation{"boxes-emptied", Kind::signalled,
                    [](auto& window, auto&) {
                      for (GtkWidget* child : childrenOf(window.inner)) gtk_widget_destroy(child);
                    }},
    WindowOperation{"boxes-packed-anew", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      for (unsigned i = 1 + pick(random, 4); i > 0; --i) {
                        gtk_box_pack_start(GTK_BOX(window.inner), newRow(random), FALSE, FALSE, 0);
                      }
                    }},
    WindowOperation{
        "title-replaced", Kind::signalled,
        [](auto& window, auto& random) {
          gtk_popover_set_relative_to(GTK_POPOVER(window.popover), window.time);
          gtk_widget_destroy(window.title);
          window.title = gtk_label_new(("song " + std::to_string(pick(random, 999))).c_str());
          atk_object_set_accessible_id(gtk_widget_get_accessible(window.title),
                                       "Music.nowPlaying.title-Music.nowPlaying.subtitle");
          gtk_container_add(GTK_CONTAINER(window.side), window.title);
          gtk_widget_show(window.title);
          gtk_popover_set_relative_to(GTK_POPOVER(window.popover), window.title);
        }},
    WindowOperation{"lyrics-replaced", Kind::signalled,
                    [](auto& window, auto& random) {
                      GtkWidget* viewport = gtk_widget_get_parent(window.rows);
                      gtk_widget_destroy(window.rows);
                      window.rows = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
                      window.inner = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
                      gtk_container_add(GTK_CONTAINER(window.rows), window.inner);
                      for (unsigned i = 5; i > 0; --i) {
                        gtk_box_pack_start(GTK_BOX(window.rows), newRow(random), FALSE, FALSE, 0);
                      }
                      gtk_container_add(GTK_CONTAINER(viewport), window.rows);
                      gtk_widget_show_all(window.rows);
                    }},
    WindowOperation{"grid-attached", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      gtk_grid_attach(GTK_GRID(window.grid), newRow(random),
                                      static_cast<int>(pick(random, 5)),
                                      static_cast<int>(pick(random, 5)), 1, 1);
                    }},
    WindowOperation{"grid-emptied", Kind::signalled,
                    [](auto& window, auto&) {
                      for (GtkWidget* child : childrenOf(window.grid)) gtk_widget_destroy(child);
                    }},
    WindowOperation{"expander-opened-or-closed", Kind::unseen,
                    [](auto& window, auto&) {
                      GtkExpander* expander = GTK_EXPANDER(window.expander);
                      gtk_expander_set_expanded(expander, !gtk_expander_get_expanded(expander));
                    }},
    WindowOperation{"expander-child", Kind::signalled,
                    [](auto& window, auto& random) {
                      GtkWidget* child = gtk_bin_get_child(GTK_BIN(window.expander));
                      if (child) return gtk_widget_destroy(child);
                      gtk_container_add(GTK_CONTAINER(window.expander), newRow(random));
                    }},
    WindowOperation{"entry-icon", Kind::signalled,
                    [](auto& window, auto&) {
                      constexpr auto place = GTK_ENTRY_ICON_PRIMARY;
                      GtkEntry* entry = GTK_ENTRY(window.entry);
                      const bool hasIcon = gtk_entry_get_icon_name(entry, place) != nullptr;
                      gtk_entry_set_icon_from_icon_name(entry, place,
                                                        hasIcon ? nullptr : "edit-find");
                    }},
    WindowOperation{"header-packed", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      gtk_header_bar_pack_start(GTK_HEADER_BAR(window.header), newRow(random));
                    }},
    WindowOperation{"header-custom-title", Kind::signalled,
                    [](auto& window, auto& random) {
                      GtkHeaderBar* header = GTK_HEADER_BAR(window.header);
                      gtk_header_bar_set_custom_title(
                          header,
                          gtk_header_bar_get_custom_title(header) ? nullptr : newRow(random));
                    }},
    WindowOperation{"menu-bar-item", Kind::unsignalled,
                    [](auto& window, auto& random) {
                      GtkWidget* item = gtk_menu_item_new_with_label("added");
                      gtk_widget_show(item);
                      gtk_menu_shell_insert(GTK_MENU_SHELL(window.menuBar), item,
                                            static_cast<int>(pick(random, 2)));
                    }},
    WindowOperation{"menu", Kind::signalled, [](auto& window, auto&) { popUpOrDown(window); }},
    WindowOperation{"popover", Kind::unseen,
                    [](auto& window, auto&) {
                      GtkPopover* popover = GTK_POPOVER(window.popover);
                      if (gtk_widget_get_visible(window.popover)) {
                        gtk_popover_popdown(popover);
                      } else {
                        gtk_popover_popup(popover);
                      }
                    }},
    WindowOperation{"second-window", Kind::signalled,
                    [](auto& window, auto& random) {
                      if (window.second) {
                        gtk_widget_destroy(window.second);
                        window.second = nullptr;
                      } else {
                        window.second = newWindow(random);
                        gtk_widget_show_all(window.second);
                      }
                    }},
    WindowOperation{"second-window-hidden", Kind::signalled,
                    [](auto& window, auto& random) {
                      if (!window.second) window.second = newWindow(random);
                      gtk_widget_set_visible(window.second, !gtk_widget_get_visible(window.second));
                    }},
    WindowOperation{"dialog", Kind::signalled,
                    [](auto& window, auto&) {
                      if (window.dialog) {
                        gtk_widget_destroy(window.dialog);
                        window.dialog = nullptr;
                      } else {
                        window.dialog = gtk_message_dialog_new(
                            GTK_WINDOW(window.window), GTK_DIALOG_DESTROY_WITH_PARENT,
                            GTK_MESSAGE_INFO, GTK_BUTTONS_CLOSE, "a message");
                        gtk_widget_show_all(window.dialog);
                      }
                    }},
    WindowOperation{"titlebar-replaced", Kind::signalled,
                    [](auto& window, auto&) {
                      window.header = gtk_header_bar_new();
                      gtk_header_bar_set_title(GTK_HEADER_BAR(window.header), "another bar");
                      gtk_widget_show(window.header);
                      gtk_window_set_titlebar(GTK_WINDOW(window.window), window.header);
                    }},
};

}  // namespace

std::span<const WindowOperation> childOperations() { return operations; }

}  // namespace vellora
