#include "platform/linux/wayland/workspace/window_identity.h"

#include <algorithm>
#include <string_view>

#include <gio/gio.h>

namespace vellora {
namespace {

bool areAlike(std::string_view a, std::string_view b) {
  return std::ranges::equal(
      a, b, [](char x, char y) { return g_ascii_tolower(x) == g_ascii_tolower(y); });
}

// The window's names as the descriptions write them.
std::vector<WindowNames> spellings(const LocatedWindow& window,
                                   const std::vector<PlayerDescriptionPtr>& descriptions) {
  std::vector<WindowNames> result{window.names};
  if (!window.areNamesInLowerCase) return result;
  for (const PlayerDescriptionPtr& description : descriptions) {
    for (const std::string& name : description->windowClasses) {
      if (!areAlike(name, window.names.classPart)) continue;
      result.push_back({.classPart = name, .applicationId = {}});
    }
  }
  return result;
}

std::optional<std::string> identifierIn(const LocatedWindow& window) {
  for (const std::string& name : {window.names.applicationId, window.names.classPart}) {
    if (g_application_id_is_valid(name.c_str()) == FALSE) continue;
    const bool isPlayers = window.areNamesInLowerCase && areAlike(name, musicPlayer.identifier);
    return isPlayers ? std::string(musicPlayer.identifier) : name;
  }
  return std::nullopt;
}

}  // namespace

WindowIdentity identityOf(const LocatedWindow& window,
                          const std::vector<PlayerDescriptionPtr>& descriptions) {
  WindowIdentity identity;
  for (const PlayerDescriptionPtr& description : descriptions) {
    const bool names = std::ranges::any_of(
        spellings(window, {description}),
        [&](const WindowNames& one) { return !descriptionsFor(one, {description}).empty(); });
    if (names) identity.descriptions.push_back(description);
  }
  identity.identifier = identity.descriptions.empty()
                            ? identifierIn(window)
                            : std::optional(std::string(musicPlayer.identifier));
  return identity;
}

}  // namespace vellora
