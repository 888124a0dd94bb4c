#include "platform/linux/wayland/panel/panel_canvas.h"

#include <algorithm>
#include <utility>

namespace vellora {

PanelCanvas::PanelCanvas(std::function<void()> freed) : freed_(std::move(freed)) {}

ShmBuffer* PanelCanvas::draw(wl_shm* shm, const PanelContent& content, const Standing& standing) {
  Page* const page = freePage(shm, standing);
  if (page == nullptr) return nullptr;
  paintContent(page->buffer->pixels(), content, changesBetween(page->content, content));
  page->content = content;
  return page->buffer.get();
}

// One that was drawn on already is taken first.
PanelCanvas::Page* PanelCanvas::freePage(wl_shm* shm, const Standing& standing) {
  if (standing.pixelWidth != pixelWidth_ || standing.pixelHeight != pixelHeight_) {
    old_ = std::exchange(pages_, {});
    pixelWidth_ = standing.pixelWidth;
    pixelHeight_ = standing.pixelHeight;
  }
  for (Page& page : pages_) {
    if (page.buffer && !page.buffer->isInUse()) return &page;
  }
  const auto empty = std::ranges::find_if(pages_, [](const Page& page) { return !page.buffer; });
  if (empty == pages_.end()) return nullptr;
  empty->buffer = ShmBuffer::make(shm, pixelWidth_, pixelHeight_, [this] { noteReleased(); });
  return empty->buffer ? &*empty : nullptr;
}

// What moves is painted anew anyway, and what stays is not painted at all: keeping the pixels would
// save little, and they are as many as the player's window has.
void PanelCanvas::noteReleased() {
  for (Page& page : pages_) {
    if (page.buffer && !page.buffer->isInUse() && page.buffer->discard()) page.content = {};
  }
  freed_();
}

void PanelCanvas::dropOld() { old_ = {}; }

void PanelCanvas::clear() {
  pages_ = {};
  old_ = {};
}

}  // namespace vellora
