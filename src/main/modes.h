#pragma once

#include <functional>
#include <iosfwd>
#include <memory>

#include "main/arguments.h"
#include "platform/platform.h"

namespace vellora {

// Runs the mode that the arguments ask for, wherever in them its flag stands: the rendering
// self-test before the diagnosis before the overlay. Lines go to `output`, each flushed; a note on
// a diagnosis goes to standard error. The result is the exit status, always 0; a self-test that
// fails does not return. Main thread.
int runModes(const Arguments& arguments,
             const std::function<std::unique_ptr<Platform>()>& platformFactory,
             std::ostream& output);

}  // namespace vellora
