#include <iostream>

#include "base/standard_streams.h"
#include "main/modes.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
  vellora::openMissingStandardStreams();
  const vellora::Arguments arguments(argv, argv + argc);
  return vellora::runModes(arguments, vellora::makePlatform, std::cout);
}
