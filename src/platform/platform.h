#pragma once

#include <memory>

#include "platform/accessibility.h"
#include "platform/application.h"
#include "platform/caption_painter.h"
#include "platform/clock.h"
#include "platform/music_scripting.h"
#include "platform/native_view.h"
#include "platform/panel.h"
#include "platform/status_item.h"
#include "platform/workspace.h"

namespace vellora {

// Makes the seams. Making any of them shows nothing, starts no timer and works without a display
// and without a bus. Every result but the status item is never null. The platform outlives all that
// it made. Main thread.
class Platform {
 public:
  virtual ~Platform() = default;

  // One application per process; the same object at every call.
  virtual Application& application() = 0;

  virtual std::shared_ptr<const Clock> makeClock() = 0;
  virtual std::shared_ptr<Accessibility> makeAccessibility() = 0;
  virtual std::unique_ptr<Workspace> makeWorkspace() = 0;
  virtual std::unique_ptr<MusicScripting> makeMusicScripting() = 0;
  virtual std::unique_ptr<CaptionPainter> makeCaptionPainter() = 0;
  virtual std::unique_ptr<NativeView> makeView() = 0;
  virtual std::unique_ptr<Panel> makePanel() = 0;
  // Null when the system has no place for one.
  virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
};

// The platform of the system that the program was built for.
std::unique_ptr<Platform> makePlatform();

}  // namespace vellora
