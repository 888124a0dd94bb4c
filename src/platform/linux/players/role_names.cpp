#include "platform/linux/players/role_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "base/nearest_word.h"

namespace vellora {

namespace {

// As at-spi2-core 2.46 names them (atspi_role_get_name), at the place of their number in
// atspi-constants.h; the last came with 2.56.
constexpr std::array<std::string_view, 131> names{"invalid",
                                                  "accelerator label",
                                                  "alert",
                                                  "animation",
                                                  "arrow",
                                                  "calendar",
                                                  "canvas",
                                                  "check box",
                                                  "check menu item",
                                                  "color chooser",
                                                  "column header",
                                                  "combo box",
                                                  "date editor",
                                                  "desktop icon",
                                                  "desktop frame",
                                                  "dial",
                                                  "dialog",
                                                  "directory pane",
                                                  "drawing area",
                                                  "file chooser",
                                                  "filler",
                                                  "focus traversable",
                                                  "font chooser",
                                                  "frame",
                                                  "glass pane",
                                                  "html container",
                                                  "icon",
                                                  "image",
                                                  "internal frame",
                                                  "label",
                                                  "layered pane",
                                                  "list",
                                                  "list item",
                                                  "menu",
                                                  "menu bar",
                                                  "menu item",
                                                  "option pane",
                                                  "page tab",
                                                  "page tab list",
                                                  "panel",
                                                  "password text",
                                                  "popup menu",
                                                  "progress bar",
                                                  "push button",
                                                  "radio button",
                                                  "radio menu item",
                                                  "root pane",
                                                  "row header",
                                                  "scroll bar",
                                                  "scroll pane",
                                                  "separator",
                                                  "slider",
                                                  "spin button",
                                                  "split pane",
                                                  "status bar",
                                                  "table",
                                                  "table cell",
                                                  "table column header",
                                                  "table row header",
                                                  "tearoff menu item",
                                                  "terminal",
                                                  "text",
                                                  "toggle button",
                                                  "tool bar",
                                                  "tool tip",
                                                  "tree",
                                                  "tree table",
                                                  "unknown",
                                                  "viewport",
                                                  "window",
                                                  "extended",
                                                  "header",
                                                  "footer",
                                                  "paragraph",
                                                  "ruler",
                                                  "application",
                                                  "autocomplete",
                                                  "editbar",
                                                  "embedded",
                                                  "entry",
                                                  "chart",
                                                  "caption",
                                                  "document frame",
                                                  "heading",
                                                  "page",
                                                  "section",
                                                  "redundant object",
                                                  "form",
                                                  "link",
                                                  "input method window",
                                                  "table row",
                                                  "tree item",
                                                  "document spreadsheet",
                                                  "document presentation",
                                                  "document text",
                                                  "document web",
                                                  "document email",
                                                  "comment",
                                                  "list box",
                                                  "grouping",
                                                  "image map",
                                                  "notification",
                                                  "info bar",
                                                  "level bar",
                                                  "title bar",
                                                  "block quote",
                                                  "audio",
                                                  "video",
                                                  "definition",
                                                  "article",
                                                  "landmark",
                                                  "log",
                                                  "marquee",
                                                  "math",
                                                  "rating",
                                                  "timer",
                                                  "static",
                                                  "math fraction",
                                                  "math root",
                                                  "subscript",
                                                  "superscript",
                                                  "description list",
                                                  "description term",
                                                  "description value",
                                                  "footnote",
                                                  "content deletion",
                                                  "content insertion",
                                                  "mark",
                                                  "suggestion",
                                                  "push button menu",
                                                  "switch"};

using Synonym = std::pair<std::string_view, std::string_view>;

// Other spellings of programs: those of ATK 2.46 and, for the first, of at-spi2-core 2.56.
constexpr std::array spellings{Synonym{"button", "push button"}, Synonym{"edit bar", "editbar"},
                               Synonym{"statusbar", "status bar"},
                               Synonym{"tear off menu item", "tearoff menu item"}};

// What browsers make of roles of ARIA and of elements of HTML (Core Accessibility API Mappings and
// HTML-AAM), where the name is another.
constexpr std::array markup{Synonym{"a", "link"},
                            Synonym{"aside", "landmark"},
                            Synonym{"blockquote", "block quote"},
                            Synonym{"checkbox", "check box"},
                            Synonym{"complementary", "landmark"},
                            Synonym{"div", "section"},
                            Synonym{"generic", "section"},
                            Synonym{"group", "panel"},
                            Synonym{"h1", "heading"},
                            Synonym{"h2", "heading"},
                            Synonym{"img", "image"},
                            Synonym{"li", "list item"},
                            Synonym{"listbox", "list box"},
                            Synonym{"listitem", "list item"},
                            Synonym{"main", "landmark"},
                            Synonym{"menuitem", "menu item"},
                            Synonym{"nav", "landmark"},
                            Synonym{"navigation", "landmark"},
                            Synonym{"ol", "list"},
                            Synonym{"option", "list item"},
                            Synonym{"p", "paragraph"},
                            Synonym{"region", "landmark"},
                            Synonym{"row", "table row"},
                            Synonym{"tabpanel", "scroll pane"},
                            Synonym{"textbox", "entry"},
                            Synonym{"treeitem", "tree item"},
                            Synonym{"ul", "list"}};

template <typename Synonyms>
std::string_view meaning(const Synonyms& synonyms, std::string_view word) {
  const auto found = std::ranges::find(synonyms, word, &Synonym::first);
  return found == synonyms.end() ? std::string_view() : found->second;
}

}  // namespace

std::optional<std::uint32_t> roleNumber(std::string_view name) {
  const std::string_view usual = meaning(spellings, name);
  const auto found = std::ranges::find(names, usual.empty() ? name : usual);
  if (found == names.end()) return std::nullopt;
  return static_cast<std::uint32_t>(found - names.begin());
}

std::string roleName(std::uint32_t number) {
  return number < names.size() ? std::string(names[number]) : "role " + std::to_string(number);
}

std::string_view likelyRoleName(std::string_view word) {
  const std::string_view meant = meaning(markup, word);
  return meant.empty() ? nearestWord(word, names) : meant;
}

}  // namespace vellora
