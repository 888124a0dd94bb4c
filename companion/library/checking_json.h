#pragma once

#include <iosfwd>

#include "companion/library/checking.h"

namespace vellora::companion {

// Writes what `checkLibrary` tells as one JSON object, in the shape that the manual page of
// vellora-companion has, with a line feed. Text that is not UTF-8 is written with U+FFFD.
CheckSummary checkLibraryAsJson(const Library& library, const CheckProgress& progress,
                                std::ostream& out);

}  // namespace vellora::companion
