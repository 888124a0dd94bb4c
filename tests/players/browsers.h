#pragma once

#include <gtest/gtest.h>

#include "players/browser_desk.h"

namespace vellora::e2e {

inline const Browser chromium{"Chromium", "chromium", "Chromium", false};
inline const Browser chromiumApplication{"ChromiumApplication", "chromium", "Chromium", true};
inline const Browser firefox{"Firefox", "firefox-esr", "firefox-esr", false};

// A test that is run in each of the browsers.
class EveryBrowser : public BrowserDesk, public testing::WithParamInterface<Browser> {
 protected:
  EveryBrowser() : BrowserDesk(GetParam()) {}
};

}  // namespace vellora::e2e
