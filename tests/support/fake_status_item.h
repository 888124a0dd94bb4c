#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/status_item.h"
#include "support/log.h"

namespace vellora {

// A status item that the test can look at and whose menu it can use. The log outlives the item.
class FakeStatusItem final : public StatusItem {
 public:
  FakeStatusItem(Log& log, bool withButton) : log_(log), withButton_(withButton) {}
  ~FakeStatusItem() override { log_.push_back("status item gone"); }

  bool hasButton() const override { return withButton_; }
  void setTitle(std::string_view text) override {
    log_.push_back("title " + std::string(text));
    if (withButton_) title = text;
  }
  void setToolTip(std::string_view text) override {
    log_.push_back("tooltip " + std::string(text));
    if (withButton_) toolTip = text;
  }
  void setMenu(std::vector<MenuEntry> entries) override {
    menu = std::move(entries);
    log_.push_back("menu of " + std::to_string(menu.size()));
  }

  std::string title;
  std::string toolTip;
  std::vector<MenuEntry> menu;

 private:
  Log& log_;
  bool withButton_;
};

}  // namespace vellora
