#pragma once

#include "companion/program/options.h"

namespace vellora::companion {

// The tasks on folders of lyrics, which need no overlay. The exit status.
int check(const Options& options);
int import(const Options& options);

}  // namespace vellora::companion
