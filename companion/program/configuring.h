#pragma once

#include "companion/program/options.h"

namespace vellora::companion {

// Says which settings hold and where each comes from, or makes the settings' file. The exit status.
int config(const Options& options);

}  // namespace vellora::companion
