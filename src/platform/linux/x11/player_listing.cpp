#include "platform/linux/x11/player_listing.h"

#include <utility>

#include "platform/linux/x11/screen_metrics.h"

namespace vellora {
namespace {

constexpr std::uint32_t listBytes = 65536;

}  // namespace

void PlayerListing::handleEvent(const xcb_generic_event_t& event) {
  if (eventType(event) != XCB_PROPERTY_NOTIFY) return;
  const auto& notice = eventAs<xcb_property_notify_event_t>(event);
  if (notice.window == session_.root() && notice.atom == session_.atoms().netClientList) {
    isStale_ = true;
  }
}

void PlayerListing::forget() {
  list_.reset();
  programs_.clear();
  windows_.keepOnly({});
}

void PlayerListing::advance(std::optional<std::int32_t> front) {
  if (list_ && list_->hasArrived()) {
    for (const xcb_window_t window : list_->takeNumbers()) {
      programs_.emplace_back(session_, window);
    }
    list_.reset();
    if (programs_.empty()) takeWindows(front);
  }
  if (!programs_.empty() && programs_.back().hasArrived()) takeWindows(front);
  if (!list_ && programs_.empty() && std::exchange(isStale_, false)) {
    list_.emplace(session_.connection(), session_.root(), session_.atoms().netClientList,
                  listBytes);
  }
  xcb_flush(session_.connection());
}

void PlayerListing::takeWindows(std::optional<std::int32_t> front) {
  std::vector<std::int32_t> listed;
  if (front) listed.push_back(*front);
  for (WindowProgramQuestion& question : std::exchange(programs_, {})) {
    const auto program = question.take();
    if (!program) continue;
    auto descriptions = descriptionsFor(program->names, descriptions_);
    if (descriptions.empty()) continue;
    listed.push_back(program->process);
    // Of one that has been in front more is known.
    if (windows_.find(program->process)) continue;
    windows_.note({.process = program->process,
                   .descriptions = std::move(descriptions),
                   .clientArea = std::nullopt,
                   .scale = session_.metrics().scale().value_or(1)});
  }
  windows_.keepOnly(listed);
}

}  // namespace vellora
