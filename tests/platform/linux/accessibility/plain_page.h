#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "music/music_layout.h"
#include "platform/linux/accessibility/described_fixture.h"

namespace vellora {

// The plain way to read a page: a walk through the objects of the fake program themselves, without
// a bus, questions or memory. Of the patterns it knows roles, names and classes.
class PlainPage {
 public:
  PlainPage(const FakeProgram& program, const LyricsPattern& lyrics)
      : objects_(program.objects), lyrics_(lyrics) {}

  MusicLayout read(const std::string& title) const {
    MusicLayout layout;
    layout.title = title;
    const std::size_t frame = objects_[0].children.front();
    layout.window = rect(objects_[frame]);
    const auto page = first(frame, [&](std::size_t one) {
      return objects_[one].role == FakeRole::documentWeb &&
             (objects_[one].states & FakeState::showing) != 0;
    });
    if (!page) return layout;
    const auto view = first(*page, [&](std::size_t one) { return fitsHere(lyrics_.view, one); });
    if (!view) return layout;
    if (objects_[*view].extents) {
      layout.viewport = rect(objects_[*view]).intersection(rect(objects_[*page]));
    }
    takeRows(*view, layout);
    std::ranges::stable_sort(layout.rows, {}, [](const MusicRow& row) { return row.frame.y; });
    return layout;
  }

 private:
  bool fitsHere(const ElementPattern& pattern, std::size_t one) const {
    const FakeAccessible& object = objects_[one];
    return fits(pattern, {.role = object.role,
                          .name = object.name,
                          .classes = object.classes,
                          .id = object.attributeId});
  }

  template <class Sought>
  std::optional<std::size_t> first(std::size_t top, Sought isSought) const {
    for (const std::size_t child : objects_[top].children) {
      if (isSought(child)) return child;
      if (const auto below = first(child, isSought)) return below;
    }
    return std::nullopt;
  }

  void takeRows(std::size_t top, MusicLayout& layout) const {
    for (const std::size_t child : objects_[top].children) {
      if (!fitsHere(lyrics_.row, child)) {
        takeRows(child, layout);
        continue;
      }
      const std::string text = textOf(child);
      if (!text.empty() && objects_[child].extents) {
        layout.rows.push_back({text, rect(objects_[child])});
      }
    }
  }

  std::string textOf(std::size_t one) const {
    const FakeAccessible& object = objects_[one];
    if (!object.name.empty()) return object.name;
    if (object.text && !object.text->empty()) return *object.text;
    std::string joined;
    for (const std::size_t child : object.children) {
      const std::string part = textOf(child);
      if (!part.empty() && !joined.empty()) joined += ' ';
      joined += part;
    }
    return joined;
  }

  static Rect rect(const FakeAccessible& object) {
    const auto& [x, y, width, height] = *object.extents;
    return {double(x), double(y), double(width), double(height)};
  }

  const std::vector<FakeAccessible>& objects_;
  const LyricsPattern& lyrics_;
};

}  // namespace vellora
