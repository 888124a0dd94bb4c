#pragma once

#include <sys/types.h>
#include <unistd.h>

namespace vellora {

// While it lives, the process has no more rights to files than an ordinary user who owns none of
// them: permissions mean nothing to root.
class OrdinaryUser {
 public:
  OrdinaryUser() : before_(::geteuid()) {
    if (before_ == 0) worked_ = ::seteuid(65534) == 0;
  }
  ~OrdinaryUser() {
    if (before_ == 0 && ::seteuid(before_) != 0) ::_exit(70);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  // False where the rights could not be given up.
  bool worked() const { return worked_; }

 private:
  uid_t before_;
  bool worked_ = true;
};

}  // namespace vellora
