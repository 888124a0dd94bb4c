#include "platform/linux/players_tool/front_window.h"

#include <chrono>
#include <utility>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/glib/event_source.h"
#include "platform/linux/wayland/session_choice.h"
#include "platform/linux/wayland/workspace/located_player.h"
#include "platform/linux/wayland/workspace/window_identity.h"
#include "platform/linux/x11/client_area.h"
#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/window_program.h"
#include "platform/linux/x11/x_property.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {
namespace {

constexpr std::chrono::milliseconds longestWait(2000);  // for a compositor's first answer

FrontWindowAnswer findLocated(WindowLocator& locator, const WaylandSession& session,
                              const std::vector<PlayerDescriptionPtr>& descriptions) {
  const Deadline deadline(longestWait);
  const GSourcePtr alarm = attachSource(
      g_timeout_source_new(static_cast<guint>(deadline.remainingMilliseconds())), [] {});
  while (!locator.isKnown() && !deadline.passed()) g_main_context_iteration(nullptr, TRUE);
  if (!locator.isKnown()) return {{}, "the compositor does not answer (" + locator.name() + ")"};
  const auto front = locator.frontWindow();
  if (!front) return {{}, "no window is in front"};
  const Output* const output = session.layout().under(front->content, 0);
  return {FrontWindow{.names = front->names,
                      .player = locatedPlayer(
                          *front, locator.windows(), identityOf(*front, descriptions).descriptions,
                          output == nullptr ? 1 : output->scale, session.layout().largestScale())},
          {}};
}

FrontWindowAnswer findOnX11(const std::vector<PlayerDescriptionPtr>& descriptions) {
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

}  // namespace

FrontWindowAnswer findFrontWindow(const std::vector<PlayerDescriptionPtr>& descriptions) {
  const SessionChoice found = chooseForSession();
  FrontWindowAnswer answer;
  switch (found.choice.kind) {
    case WindowSystemKind::wayland:
      answer = findLocated(*found.locator, *found.wayland, descriptions);
      break;
    case WindowSystemKind::none:
      answer.reason = "there is no window system";
      break;
    case WindowSystemKind::x11:
      answer = findOnX11(descriptions);
  }
  answer.lines = found.choice.lines;
  return answer;
}

}  // namespace vellora
