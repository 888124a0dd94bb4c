#include "controller/music_application.h"

#include <optional>
#include <string>

#include "base/text.h"
#include "platform/player.h"

namespace vellora {

std::shared_ptr<const RunningApplication> frontmostMusic(Workspace& workspace) {
  std::shared_ptr<const RunningApplication> application = workspace.frontmostApplication();
  if (!application) return nullptr;
  const std::optional<std::string> identifier = application->bundleIdentifier();
  if (!identifier || !textEquals(*identifier, musicPlayer.identifier)) return nullptr;
  return application;
}

}  // namespace vellora
