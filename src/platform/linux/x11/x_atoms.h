#pragma once

#include <xcb/xcb.h>

namespace vellora {

// The names that this folder's properties, selections and types go by, as the server numbers them;
// zero where there is no server. EWMH 1.5, ICCCM 2.0, the XSETTINGS specification 0.5 and, for the
// shadow, the name that compositors of compton's line read.
struct XAtoms {
  xcb_atom_t netActiveWindow = XCB_ATOM_NONE;
  xcb_atom_t netClientList = XCB_ATOM_NONE;
  xcb_atom_t netClientListStacking = XCB_ATOM_NONE;
  xcb_atom_t netWmPid = XCB_ATOM_NONE;
  xcb_atom_t netWmName = XCB_ATOM_NONE;
  xcb_atom_t netWmDesktop = XCB_ATOM_NONE;
  xcb_atom_t netWmState = XCB_ATOM_NONE;
  xcb_atom_t netWmStateAbove = XCB_ATOM_NONE;
  xcb_atom_t netWmStateHidden = XCB_ATOM_NONE;
  xcb_atom_t netWmStateShaded = XCB_ATOM_NONE;
  xcb_atom_t netWmStateSticky = XCB_ATOM_NONE;
  xcb_atom_t netWmStateSkipTaskbar = XCB_ATOM_NONE;
  xcb_atom_t netWmStateSkipPager = XCB_ATOM_NONE;
  xcb_atom_t netWmWindowType = XCB_ATOM_NONE;
  xcb_atom_t netWmWindowTypeNotification = XCB_ATOM_NONE;
  xcb_atom_t netWmBypassCompositor = XCB_ATOM_NONE;
  xcb_atom_t gtkApplicationId = XCB_ATOM_NONE;
  xcb_atom_t gtkFrameExtents = XCB_ATOM_NONE;
  xcb_atom_t comptonShadow = XCB_ATOM_NONE;
  xcb_atom_t utf8String = XCB_ATOM_NONE;
  xcb_atom_t xsettings = XCB_ATOM_NONE;
  xcb_atom_t xsettingsOwner = XCB_ATOM_NONE;   // _XSETTINGS_Sn, n the screen's number
  xcb_atom_t compositorOwner = XCB_ATOM_NONE;  // _NET_WM_CM_Sn
};

// Asks for all of them in one volley.
XAtoms internAtoms(xcb_connection_t* connection, int screenNumber);

}  // namespace vellora
