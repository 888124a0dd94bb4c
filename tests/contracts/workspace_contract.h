#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contracts/contract.h"
#include "platform/workspace.h"

namespace vellora {

// A desktop on which one program is in front and some run.
class WorkspaceSubject {
 public:
  struct Program {
    std::optional<std::string> identifier;
    std::int32_t process = 0;
    bool operator==(const Program&) const = default;
  };

  virtual ~WorkspaceSubject() = default;

  virtual Workspace& workspace() = 0;
  // By another account than the workspace's own.
  virtual Program inFront() = 0;
  // Those of one identifier, one at least.
  virtual std::vector<Program> running() = 0;
  virtual std::optional<double> primaryHeight() = 0;
  virtual std::optional<double> mainScale() = 0;
};

using WorkspaceContract = ContractTest<WorkspaceSubject>;

// A desktop that the test can change.
class ChangingWorkspaceSubject {
 public:
  virtual ~ChangingWorkspaceSubject() = default;

  virtual Workspace& workspace() = 0;
  // Nothing: no program is in front.
  virtual void bringToFront(const std::optional<WorkspaceSubject::Program>& program) = 0;
  virtual void losePrograms() = 0;
  virtual void loseScreens() = 0;
};

using ChangingWorkspaceContract = ContractTest<ChangingWorkspaceSubject>;

}  // namespace vellora
