#include "main/modes.h"

#include <iostream>
#include <string>

#include "controller/overlay_delegate.h"
#include "main/diagnosis.h"
#include "main/self_test.h"

namespace vellora {

namespace {

void runRenderTest(const Arguments& arguments, Platform& platform, std::ostream& output) {
  platform.application().setAccessoryPolicy();
  const PixelSize size = runSelfTest(platform, locationValue(arguments, Flags::output), output);
  output << "PASS native AppKit caption rendering (" << std::to_string(size.width) << " × "
         << std::to_string(size.height) << ")" << std::endl;
}

void runOverlay(const Arguments& arguments, Platform& platform, std::ostream& output) {
  Application& application = platform.application();
  application.setAccessoryPolicy();
  const auto controller = std::make_shared<OverlayDelegate>(
      locationValue(arguments, Flags::snapshot), platform, output);
  application.setDelegate(controller);
  application.run();
}

}  // namespace

int runModes(const Arguments& arguments,
             const std::function<std::unique_ptr<Platform>()>& platformFactory,
             std::ostream& output) {
  const std::unique_ptr<Platform> platform = platformFactory();
  if (hasFlag(arguments, Flags::renderTest)) {
    runRenderTest(arguments, *platform, output);
  } else if (hasFlag(arguments, Flags::diagnose)) {
    diagnose(*platform, output, std::cerr);
  } else {
    runOverlay(arguments, *platform, output);
  }
  return 0;
}

}  // namespace vellora
