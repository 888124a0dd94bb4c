#include "platform/linux/x11/x_atoms.h"

#include <string>
#include <utility>
#include <vector>

#include "platform/linux/x11/xcb_types.h"

namespace vellora {

XAtoms internAtoms(xcb_connection_t* connection, int screenNumber) {
  XAtoms atoms;
  const std::string screen = std::to_string(screenNumber);
  const std::vector<std::pair<xcb_atom_t*, std::string>> names = {
      {&atoms.netActiveWindow, "_NET_ACTIVE_WINDOW"},
      {&atoms.netClientList, "_NET_CLIENT_LIST"},
      {&atoms.netClientListStacking, "_NET_CLIENT_LIST_STACKING"},
      {&atoms.netWmPid, "_NET_WM_PID"},
      {&atoms.netWmName, "_NET_WM_NAME"},
      {&atoms.netWmDesktop, "_NET_WM_DESKTOP"},
      {&atoms.netWmState, "_NET_WM_STATE"},
      {&atoms.netWmStateAbove, "_NET_WM_STATE_ABOVE"},
      {&atoms.netWmStateHidden, "_NET_WM_STATE_HIDDEN"},
      {&atoms.netWmStateShaded, "_NET_WM_STATE_SHADED"},
      {&atoms.netWmStateSticky, "_NET_WM_STATE_STICKY"},
      {&atoms.netWmStateSkipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR"},
      {&atoms.netWmStateSkipPager, "_NET_WM_STATE_SKIP_PAGER"},
      {&atoms.netWmWindowType, "_NET_WM_WINDOW_TYPE"},
      {&atoms.netWmWindowTypeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION"},
      {&atoms.netWmBypassCompositor, "_NET_WM_BYPASS_COMPOSITOR"},
      {&atoms.gtkApplicationId, "_GTK_APPLICATION_ID"},
      {&atoms.gtkFrameExtents, "_GTK_FRAME_EXTENTS"},
      {&atoms.comptonShadow, "_COMPTON_SHADOW"},
      {&atoms.utf8String, "UTF8_STRING"},
      {&atoms.xsettings, "_XSETTINGS_SETTINGS"},
      {&atoms.xsettingsOwner, "_XSETTINGS_S" + screen},
      {&atoms.compositorOwner, "_NET_WM_CM_S" + screen},
  };
  std::vector<xcb_intern_atom_cookie_t> cookies;
  cookies.reserve(names.size());
  for (const auto& [atom, name] : names) {
    cookies.push_back(
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookies[i], nullptr));
    // They are asked for once in a program's life: a question that failed gets a second chance.
    if (!reply) {
      const std::string& name = names[i].second;
      const auto again =
          xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
      reply.reset(xcb_intern_atom_reply(connection, again, nullptr));
    }
    if (reply) *names[i].first = reply->atom;
  }
  return atoms;
}

}  // namespace vellora
