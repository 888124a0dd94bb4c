#pragma once

namespace vellora {

// Opens those of standard input, output and error that the program was started without, on the null
// device. Else the next file or connection that is opened would take the number, and what is
// printed would go there. First of all in a program's `main`, while it has one thread.
void openMissingStandardStreams();

}  // namespace vellora
