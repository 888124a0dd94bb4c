#include "platform/linux/x11/top_levels.h"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/linux/x11/x_property.h"

namespace vellora {
namespace {

// More than any window manager wraps around a window.
constexpr int deepestClient = 16;
constexpr std::uint32_t clientListBytes = 65536;

}  // namespace

void TopLevels::watch(bool watch) {
  session_.watchTopLevels(watch);
  order_.clear();
  traits_.clear();
  homes_.clear();
  clients_.reset();
  changed_ = true;
}

void TopLevels::handleEvent(const xcb_generic_event_t& event) {
  const xcb_window_t root = session_.root();
  switch (eventType(event)) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& notice = eventAs<xcb_property_notify_event_t>(event);
      const XAtoms& atoms = session_.atoms();
      if (notice.window != root) return;
      if (notice.atom != atoms.netClientList && notice.atom != atoms.netActiveWindow) return;
      clients_.reset();
      homes_.clear();  // a client that went from frame to frame told the root nothing
      changed_ = true;
      return;
    }
    case XCB_MAP_NOTIFY: {
      const auto& notice = eventAs<xcb_map_notify_event_t>(event);
      if (notice.event == root) noteMapped(notice.window, true);
      return;
    }
    case XCB_UNMAP_NOTIFY: {
      const auto& notice = eventAs<xcb_unmap_notify_event_t>(event);
      if (notice.event == root) noteMapped(notice.window, false);
      return;
    }
    case XCB_CONFIGURE_NOTIFY: {
      const auto& notice = eventAs<xcb_configure_notify_event_t>(event);
      if (notice.event == root) noteConfigured(notice.window, notice.above_sibling);
      return;
    }
    case XCB_CIRCULATE_NOTIFY:
      changed_ = true;
      return;
    case XCB_REPARENT_NOTIFY: {
      const auto& notice = eventAs<xcb_reparent_notify_event_t>(event);
      if (notice.event == root) forget(notice.window);
      changed_ = true;
      return;
    }
    case XCB_DESTROY_NOTIFY: {
      const auto& notice = eventAs<xcb_destroy_notify_event_t>(event);
      if (notice.event == root) forget(notice.window);
      return;
    }
    default:
      return;
  }
}

void TopLevels::noteMapped(xcb_window_t window, bool mapped) {
  const auto found = traits_.find(window);
  if (found != traits_.end() && std::exchange(found->second.mapped, mapped) == mapped) return;
  changed_ = true;
}

// Windows that are moved or resized tell their place in the stack too, and it is the old one.
void TopLevels::noteConfigured(xcb_window_t window, xcb_window_t above) {
  const auto found = std::ranges::find(order_, window);
  if (found == order_.end()) {
    changed_ = true;
    return;
  }
  const xcb_window_t below = found == order_.begin() ? xcb_window_t{XCB_WINDOW_NONE} : *(found - 1);
  if (below != above) changed_ = true;
}

void TopLevels::noteRestacked(xcb_window_t window, xcb_window_t sibling) {
  std::erase(order_, window);
  const auto found = std::ranges::find(order_, sibling);
  order_.insert(found == order_.end() ? order_.begin() : found + 1, window);
}

// Its number may come back as another's, and what it held is elsewhere now.
void TopLevels::forget(xcb_window_t window) {
  std::erase(order_, window);
  traits_.erase(window);
  std::erase_if(homes_,
                [&](const auto& each) { return each.first == window || each.second == window; });
}

std::vector<TopLevel> TopLevels::read() {
  xcb_connection_t* const c = session_.connection();
  const auto cookie = xcb_query_tree(c, session_.root());
  if (!clients_) readClients();
  const XcbReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, cookie, nullptr));
  if (!tree) return {};
  const xcb_window_t* const first = xcb_query_tree_children(tree.get());
  order_.assign(first, first + xcb_query_tree_children_length(tree.get()));
  askTraits();
  findHomes();
  std::set<xcb_window_t> managed;
  for (const xcb_window_t client : *clients_) {
    const auto home = homes_.find(client);
    if (home != homes_.end()) managed.insert(home->second);
  }
  std::vector<TopLevel> result;
  result.reserve(order_.size());
  for (const xcb_window_t window : order_) {
    const Traits& traits = traits_[window];
    result.push_back({window, traits.mapped && !traits.takesInputOnly, managed.contains(window),
                      traits.overrideRedirect});
  }
  changed_ = false;
  return result;
}

xcb_window_t TopLevels::active() const {
  const auto home = homes_.find(active_);
  return home == homes_.end() ? xcb_window_t{XCB_WINDOW_NONE} : home->second;
}

void TopLevels::readClients() {
  xcb_connection_t* const c = session_.connection();
  const XAtoms& atoms = session_.atoms();
  PropertyQuestion list(c, session_.root(), atoms.netClientList, clientListBytes);
  PropertyQuestion active(c, session_.root(), atoms.netActiveWindow);
  clients_ = list.takeNumbers();
  const auto actives = active.takeNumbers();
  active_ = actives.empty() ? xcb_window_t{XCB_WINDOW_NONE} : actives[0];
  if (active_ == session_.root()) active_ = XCB_WINDOW_NONE;
  if (active_ != XCB_WINDOW_NONE) clients_->push_back(active_);
}

void TopLevels::askTraits() {
  xcb_connection_t* const c = session_.connection();
  std::vector<std::pair<xcb_window_t, xcb_get_window_attributes_cookie_t>> questions;
  for (const xcb_window_t window : order_) {
    if (traits_.contains(window)) continue;
    questions.emplace_back(window, xcb_get_window_attributes(c, window));
  }
  for (const auto& [window, cookie] : questions) {
    const XcbReply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(c, cookie, nullptr));
    if (!reply) continue;
    traits_[window] = {reply->map_state != XCB_MAP_STATE_UNMAPPED,
                       reply->_class == XCB_WINDOW_CLASS_INPUT_ONLY, reply->override_redirect != 0};
  }
}

// Up from each client that is new, all of them a step at a time.
void TopLevels::findHomes() {
  xcb_connection_t* const c = session_.connection();
  const std::set<xcb_window_t> topLevels(order_.begin(), order_.end());
  std::map<xcb_window_t, xcb_window_t> climbing;  // from a client to where it has come
  for (const xcb_window_t client : *clients_) {
    if (!homes_.contains(client)) climbing[client] = client;
  }
  for (int depth = 0; depth < deepestClient && !climbing.empty(); ++depth) {
    std::vector<std::pair<xcb_window_t, xcb_query_tree_cookie_t>> questions;
    for (const auto& [client, reached] : climbing) {
      if (topLevels.contains(reached)) {
        homes_[client] = reached;
      } else {
        questions.emplace_back(client, xcb_query_tree(c, reached));
      }
    }
    climbing.clear();
    for (const auto& [client, cookie] : questions) {
      const XcbReply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(c, cookie, nullptr));
      if (reply && reply->parent != XCB_WINDOW_NONE) climbing[client] = reply->parent;
    }
  }
}

}  // namespace vellora
