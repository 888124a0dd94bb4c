#include "faults/fault_plan.h"

#include <cerrno>
#include <map>
#include <utility>

namespace vellora::faults {
namespace {

struct Plan {
  Fault fault;
  std::vector<Call> calls;
  std::string struck;  // the function of the call that went wrong
};

// Each thread's own: what other threads do is not counted.
thread_local std::optional<Plan> plan;

const std::vector<int> ofNames{EACCES, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, ESTALE};

std::vector<int> namesAnd(std::vector<int> more) {
  more.insert(more.end(), ofNames.begin(), ofNames.end());
  return more;
}

}  // namespace

void begin(const Fault& fault) { plan = Plan{fault, {}, {}}; }

std::vector<Call> end() {
  std::vector<Call> calls = std::move(plan->calls);
  plan.reset();
  return calls;
}

std::optional<Fault> next(std::string_view function, std::string_view path) {
  if (!plan) return std::nullopt;
  plan->calls.push_back({std::string(function), std::string(path)});
  const bool chosen = plan->calls.size() == plan->fault.call;
  if (chosen) plan->struck = function;
  if (!chosen && !(plan->fault.lasting && plan->struck == function)) return std::nullopt;
  return plan->fault;
}

const std::vector<int>& errorsOf(std::string_view function) {
  static const std::map<std::string, std::vector<int>, std::less<>> errors{
      {"open", namesAnd({EDQUOT, EEXIST, EINTR, EISDIR, EMFILE, ENFILE, ENODEV, ENOSPC, ENXIO,
                         EOVERFLOW, EPERM, EROFS, ETXTBSY, EWOULDBLOCK})},
      {"openat", namesAnd({EINTR, EMFILE, ENFILE, EPERM})},
      {"fdopendir", {ENOMEM, ENOTDIR}},
      {"opendir", namesAnd({EMFILE, ENFILE})},
      {"readdir", {EIO, ENOENT, EOVERFLOW, ESTALE}},
      {"read", {EAGAIN, EINTR, EIO, EISDIR, ESTALE}},
      {"write", {EAGAIN, EDQUOT, EFBIG, EINTR, EIO, ENOSPC, EPERM, ESTALE}},
      {"fsync", {EDQUOT, EINTR, EINVAL, EIO, ENOSPC, EROFS}},
      {"close", {EDQUOT, EINTR, EIO, ENOSPC}},
      {"rename", namesAnd({EBUSY, EDQUOT, EEXIST, EISDIR, EMLINK, ENOSPC, EPERM, EROFS, EXDEV})},
      {"unlink", namesAnd({EBUSY, EISDIR, EPERM, EROFS})},
      {"stat", namesAnd({EOVERFLOW})},
      {"lstat", namesAnd({EOVERFLOW})},
      {"fstat", {EIO, ENOMEM, EOVERFLOW, ESTALE}},
      {"mkdir", namesAnd({EDQUOT, EEXIST, EMLINK, ENOSPC, EPERM, EROFS})},
      {"fchmodat", namesAnd({EPERM, EROFS})},
  };
  return errors.at(std::string(function));
}

}  // namespace vellora::faults
