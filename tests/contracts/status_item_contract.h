#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "contracts/contract.h"
#include "platform/status_item.h"

namespace vellora {

class StatusItemSubject {
 public:
  // A menu's entry as a person sees it.
  struct Entry {
    bool separator = false;
    std::string title;
    bool selectable = false;
    std::string key;
    bool operator==(const Entry&) const = default;
  };

  virtual ~StatusItemSubject() = default;

  virtual StatusItem& item() = 0;
  virtual std::string shownTitle() = 0;
  virtual std::string shownToolTip() = 0;
  virtual std::vector<Entry> shownMenu() = 0;
  // Clicks on the menu's entry, and returns when that has had its effect.
  virtual void choose(std::size_t entry) = 0;
};

using StatusItemContract = ContractTest<StatusItemSubject>;

}  // namespace vellora
