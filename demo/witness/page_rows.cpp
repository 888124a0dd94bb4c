#include "witness/page_rows.h"

#include <functional>
#include <sstream>

#include "witness/accessible_element.h"
#include "witness/captions_seen.h"

namespace vellora::witness {

namespace {

constexpr int deepest = 40;

bool hasClass(const Element& element, const std::string& wanted) {
  const auto attributes = element.attributes();
  const auto classes = attributes.find("class");
  if (classes == attributes.end()) return false;
  std::istringstream words(classes->second);
  for (std::string word; words >> word;) {
    if (word == wanted) return true;
  }
  return false;
}

// The first element below with that id, depth first.
std::optional<Element> findById(const Element& element, const std::string& id, int depth = 0) {
  if (depth > deepest) return std::nullopt;
  const std::vector<Element> children = element.children();
  // What a page has last is tried first: the lyrics stand behind everything else.
  for (auto child = children.rbegin(); child != children.rend(); ++child) {
    const auto attributes = child->attributes();
    const auto found = attributes.find("id");
    if (found != attributes.end() && found->second == id) return *child;
    if (const auto below = findById(*child, id, depth + 1)) return below;
  }
  return std::nullopt;
}

void collectRows(const Element& element, const PageQuery& query, std::vector<SeenRow>& rows,
                 int depth = 0) {
  if (depth > deepest) return;
  for (const Element& child : element.children()) {
    if (!hasClass(child, query.rowClass)) {
      collectRows(child, query, rows, depth + 1);
      continue;
    }
    std::string text = child.text("Name");
    if (text.empty()) text = child.content();
    rows.push_back({std::move(text), scaled(child.extents(), 1 / query.unitsPerPoint)});
  }
}

}  // namespace

std::optional<SeenPlayer> readPage(const PageQuery& query) {
  const Connection bus = accessibilityBus();
  if (!bus) return std::nullopt;
  for (const Element& program : desktopOf(bus.get()).children()) {
    if (program.process() != query.process) continue;
    for (const Element& window : program.children()) {
      if (window.role() != "frame") continue;
      const auto view = findById(window, query.view);
      if (!view) return std::nullopt;
      SeenPlayer seen;
      seen.window = window.extents();
      const Rect visible = scaled(view->extents(), 1 / query.unitsPerPoint);
      if (visible.isEmpty()) return std::nullopt;
      seen.viewport = visible.intersection(seen.window);
      collectRows(*view, query, seen.rows);
      return seen;
    }
  }
  return std::nullopt;
}

}  // namespace vellora::witness
