#pragma once

#include <chrono>

namespace vellora {

// Whether an X server answers at the display of that name (null: the one DISPLAY names) within
// `patience`. libxcb itself waits without end for a server that accepts a connection and then says
// nothing, as a stopped one does. Any answer counts, a refusal too: what this client may do there
// is for the real connection to find out. X Window System Protocol, chapter 8.
bool displayAnswers(const char* displayName, std::chrono::milliseconds patience);

}  // namespace vellora
