#include "platform/linux/tray/kept_item.h"

#include <utility>

namespace vellora {

KeptItem::KeptItem()
    : watch_([this](const SessionBus& bus) { make(bus); }, [this] { item_.reset(); }) {}

void KeptItem::make(const SessionBus& bus) {
  item_ = std::make_unique<NotifierItem>(shareObject(bus.get()));
  item_->setTitle(title_);
  item_->setToolTip(toolTip_);
  item_->setMenu(entries_);
}

void KeptItem::setTitle(std::string_view title) {
  title_ = title;
  if (item_) item_->setTitle(title);
}

void KeptItem::setToolTip(std::string_view toolTip) {
  toolTip_ = toolTip;
  if (item_) item_->setToolTip(toolTip);
}

void KeptItem::setMenu(std::vector<MenuEntry> entries) {
  entries_ = entries;
  if (item_) item_->setMenu(std::move(entries));
}

std::unique_ptr<StatusItem> makeNotifierItem() {
  return connectToSessionBus() ? std::make_unique<KeptItem>() : nullptr;
}

}  // namespace vellora
