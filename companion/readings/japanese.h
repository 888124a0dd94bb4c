#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vellora::companion {

// Japanese in modified Hepburn romanisation, words apart, by MeCab and a dictionary with the fields
// of IPADIC. Not for two threads at once.
class Japanese {
 public:
  // `dictionary`: its folder; where that is empty, the one that MeCab's own settings name. Null
  // where there is none, or one with other fields or another encoding than UTF-8.
  static std::unique_ptr<Japanese> with(const std::string& dictionary);

  virtual ~Japanese() = default;
  // Particles are written as they are said (wa, e, o). What the dictionary cannot read stays.
  virtual std::string romaji(std::string_view text) = 0;
};

}  // namespace vellora::companion
