#include "platform/linux/wayland/locator/i3_locator.h"

#include <utility>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/i3_tree.h"

namespace vellora {

I3Locator::I3Locator(std::string path) : path_(std::move(path)) { connect(); }

bool I3Locator::open() {
  connection_ = std::make_unique<I3Connection>(
      I3Connection::Listener{.told = [this](const I3Message& message) { take(message); },
                             .ended = [this] { reconnectLater(); }});
  // One by one: where one name is unknown (sway 1.7 has no "output"), the others of its list may be
  // passed over.
  bool isSent = connection_->open(path_);
  for (const char* const events :
       {R"(["window"])", R"(["workspace"])", R"(["output"])", R"(["shutdown"])"}) {
    isSent = isSent && connection_->send(I3Message::subscribe, events);
  }
  return isSent;
}

bool I3Locator::putQuestion() { return connection_->send(I3Message::getTree); }

void I3Locator::take(const I3Message& message) {
  if (message.isEvent()) return takeEvent();
  if (message.type == I3Message::getTree) takeAnswer(windowsInI3Tree(message.payload));
}

}  // namespace vellora
