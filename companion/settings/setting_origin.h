#pragma once

namespace vellora::companion {

// Where a setting's value comes from; the later the stronger.
struct SettingOrigin {
  enum class Kind { fallback, file, commandLine };
  Kind kind = Kind::fallback;
  int line = 0;  // of the file, from 1
};

}  // namespace vellora::companion
