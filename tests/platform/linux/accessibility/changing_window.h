#pragma once

#include <random>
#include <span>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// A player's window whose parts are there for as long as it is; what is in them changes.
struct ChangingWindow {
  GtkWidget* window = nullptr;
  GtkWidget* header = nullptr;    // header bar, its title bar
  GtkWidget* side = nullptr;      // box: title, time, slider and what follows
  GtkWidget* title = nullptr;     // label with the identifier of what plays
  GtkWidget* time = nullptr;      // label
  GtkWidget* slider = nullptr;    // scale
  GtkWidget* frame = nullptr;     // with a label
  GtkWidget* entry = nullptr;     // in the frame
  GtkWidget* expander = nullptr;  // with a label and a label in it
  GtkWidget* combo = nullptr;     // of texts
  GtkWidget* menuBar = nullptr;   // with items
  GtkWidget* menu = nullptr;      // that pops up
  GtkWidget* popover = nullptr;   // of the title
  GtkWidget* statusBar = nullptr;
  GtkWidget* scroll = nullptr;  // labelled "Lyrics"
  GtkWidget* rows = nullptr;    // box of buttons in it
  GtkWidget* inner = nullptr;   // box of boxes in the rows
  GtkWidget* stack = nullptr;
  GtkWidget* notebook = nullptr;
  GtkWidget* listBox = nullptr;
  GtkWidget* flowBox = nullptr;
  GtkWidget* grid = nullptr;
  GtkWidget* tree = nullptr;   // view of the model
  GtkWidget* icons = nullptr;  // view of the model
  GObjectPtr<GtkListStore> model;
  GtkWidget* second = nullptr;  // another window, while it is open
  GtkWidget* dialog = nullptr;
};

ChangingWindow makeChangingWindow();

// One change that a program may make. Its choices come from `random`.
struct WindowOperation {
  // What a reading sees of it: a change that is signalled, one that GTK does not signal (or not
  // always), or nothing but other places and sizes.
  enum class Kind { signalled, unsignalled, unseen };
  const char* name;
  Kind kind;
  void (*apply)(ChangingWindow& window, std::mt19937& random);
};

std::span<const WindowOperation> textOperations();
std::span<const WindowOperation> childOperations();
std::span<const WindowOperation> viewOperations();

// What the operations have in common.
unsigned pick(std::mt19937& random, std::size_t count);  // below `count`, which is not 0
std::string words(std::mt19937& random);
std::vector<GtkWidget*> childrenOf(GtkWidget* container);
GtkWidget* newRow(std::mt19937& random);    // a button
GtkWidget* newLabel(std::mt19937& random);  // both are shown
// A button among the rows, of which there are three at least then.
GtkWidget* anyRow(ChangingWindow& window, std::mt19937& random);

}  // namespace vellora
