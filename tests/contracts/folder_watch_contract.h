#pragma once

#include <memory>

#include "contracts/contract.h"
#include "platform/folder_watch.h"

namespace vellora {

// How the system watches folders.
class FolderWatchSubject {
 public:
  virtual ~FolderWatchSubject() = default;

  virtual std::unique_ptr<FolderWatch> watch(const std::filesystem::path& folder,
                                             std::vector<std::string_view> names) = 0;
};

using FolderWatchContract = ContractTest<FolderWatchSubject>;

}  // namespace vellora
