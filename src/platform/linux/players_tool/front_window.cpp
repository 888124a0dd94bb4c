#include "platform/linux/players_tool/front_window.h"

#include <utility>

#include "platform/linux/x11/client_area.h"
#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/window_program.h"
#include "platform/linux/x11/x_property.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

FrontWindowAnswer findFrontWindow(const std::vector<PlayerDescriptionPtr>& descriptions) {
  XSession session(nullptr);
  if (!session.present()) return {{}, "there is no X display (DISPLAY) that can be reached"};
  const auto active =
      PropertyQuestion(session.connection(), session.root(), session.atoms().netActiveWindow)
          .takeNumbers();
  if (active.empty() || active[0] == XCB_WINDOW_NONE || active[0] == session.root()) {
    return {{}, "no window is in front"};
  }
  WindowProgramQuestion program(session, active[0]);
  ClientAreaQuestion area(session, active[0]);
  auto taken = program.take();
  const auto place = area.take();
  if (!taken) return {{}, "the window in front does not say which process of this host it is of"};
  auto fitting = descriptionsFor(taken->names, descriptions);
  return {FrontWindow{.names = std::move(taken->names),
                      .player = {.process = taken->process,
                                 .descriptions = std::move(fitting),
                                 .clientArea = place,
                                 .scale = session.metrics().scale().value_or(1)}},
          {}};
}

}  // namespace vellora
