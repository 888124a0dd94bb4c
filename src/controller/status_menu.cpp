#include "controller/status_menu.h"

#include <utility>

namespace vellora {

std::vector<MenuEntry> statusMenu(std::function<void()> requestAccess, std::function<void()> stop) {
  return {
      {.title = "Vellora • Experimental", .keyEquivalent = "", .action = nullptr},
      {.separator = true, .title = "", .keyEquivalent = "", .action = nullptr},
      {.title = "Allow lyric alignment…", .keyEquivalent = "", .action = std::move(requestAccess)},
      {.title = "Stop overlay", .keyEquivalent = "q", .action = std::move(stop)},
  };
}

}  // namespace vellora
