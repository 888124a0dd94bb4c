#pragma once

namespace vellora {

// Says to this user's other programs that an overlay runs which belongs to the session bus of this
// program's environment, also while that bus has gone or the overlay does not have its name yet: a
// lock on a file in XDG_RUNTIME_DIR, which ends with the process. Several overlays may have it.
// Without that folder there is none. Main thread.
class RunningMark {
 public:
  RunningMark();
  ~RunningMark();
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;

  static bool isSet();

 private:
  int file_;
};

}  // namespace vellora
