#include "platform/linux/players/player_descriptions.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vellora {

namespace {

std::size_t particularity(const std::string& glob) {
  return static_cast<std::size_t>(
      std::ranges::count_if(glob, [](char c) { return c != '*' && c != '?'; }));
}

// Of the most particular glob that the address fits; nothing when it fits none.
std::optional<std::size_t> particularityFor(const std::string& address,
                                            const PlayerDescription& description) {
  std::optional<std::size_t> most;
  for (const std::string& glob : description.documents) {
    if (fitsGlob(glob, address)) most = std::max(most.value_or(0), particularity(glob));
  }
  return most;
}

}  // namespace

std::vector<PlayerDescriptionPtr> descriptionsFor(
    const WindowNames& window, const std::vector<PlayerDescriptionPtr>& descriptions) {
  std::vector<PlayerDescriptionPtr> found;
  for (const PlayerDescriptionPtr& description : descriptions) {
    const bool isNamed = std::ranges::any_of(description->windowClasses, [&](const auto& name) {
      return !name.empty() && (name == window.classPart || name == window.applicationId);
    });
    if (isNamed) found.push_back(description);
  }
  return found;
}

std::vector<PlayerDescriptionPtr> descriptionsForPage(
    const std::string& address, const std::vector<PlayerDescriptionPtr>& descriptions) {
  std::vector<std::pair<std::size_t, PlayerDescriptionPtr>> ranked;
  for (const PlayerDescriptionPtr& description : descriptions) {
    if (const auto rank = particularityFor(address, *description)) {
      ranked.emplace_back(*rank, description);
    }
  }
  std::ranges::stable_sort(ranked, std::ranges::greater(),
                           [](const auto& one) { return one.first; });
  std::vector<PlayerDescriptionPtr> found;
  for (auto& [rank, description] : ranked) found.push_back(std::move(description));
  return found;
}

}  // namespace vellora
