#include "platform/linux/desktop/desktop.h"

#include "platform/linux/desktop/glib_application.h"
#include "platform/linux/desktop/mpris_scripting.h"
#include "platform/linux/desktop/notifier_item.h"
#include "platform/linux/desktop/session_bus.h"
#include "platform/linux/desktop/system_clock.h"

namespace vellora {

std::unique_ptr<Application> makeApplication() { return std::make_unique<GlibApplication>(); }

std::shared_ptr<const Clock> makeClock() { return std::make_shared<SystemClock>(); }

std::unique_ptr<MusicScripting> makeMusicScripting() { return std::make_unique<MprisScripting>(); }

std::unique_ptr<StatusItem> makeStatusItem() {
  auto bus = connectToSessionBus();
  return bus ? std::make_unique<NotifierItem>(std::move(bus)) : nullptr;
}

}  // namespace vellora
