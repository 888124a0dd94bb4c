#include <memory>
#include <utility>

#include "controller/overlay_delegate.h"
#include "controller/status_menu.h"

namespace vellora {

void OverlayDelegate::applicationDidFinishLaunching() {
  tidyUp();
  configurePanel();
  addStatusItem();
  timer = application_.scheduleTimer(tickInterval, [self = weak_from_this()] {
    if (const auto controller = self.lock()) controller->tick();
  });
  tick();
}

void OverlayDelegate::addStatusItem() {
  statusItem = platform_.makeStatusItem();
  if (!statusItem) return;
  if (statusItem->hasButton()) statusItem->setTitle(StatusItemTexts::title);
  if (statusItem->hasButton()) statusItem->setToolTip(StatusItemTexts::firstToolTip);
  // A URL that was opened before the launch was over has had its first tick, and the next one
  // records nothing as long as the line is the same.
  if (statusItem->hasButton() && !statusMessage.empty()) statusItem->setToolTip(statusMessage);
  const std::weak_ptr<OverlayDelegate> self = weak_from_this();
  const auto calling = [self](void (OverlayDelegate::*operation)()) {
    return [self, operation] {
      if (const auto controller = self.lock()) (controller.get()->*operation)();
    };
  };
  statusItem->setMenu(
      statusMenu(calling(&OverlayDelegate::requestAccess), calling(&OverlayDelegate::stop)));
}

void OverlayDelegate::configurePanel() { panel->configure(canvas.nativeView()); }

void OverlayDelegate::requestAccess() {
  requestedAccess = true;
  accessibility_->requestTrust();
}

}  // namespace vellora
