#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vellora::companion {

// One of ICU's transliterations. Not for two threads at once.
class IcuRules {
 public:
  // By its name in ICU, as "Han-Latin". Null where this ICU does not have it.
  static std::unique_ptr<IcuRules> named(const char* id);
  // By rules of one's own, in ICU's language for them; null where ICU does not take them.
  static std::unique_ptr<IcuRules> written(std::string_view rules);

  virtual ~IcuRules() = default;
  // `text` and the result are UTF-8.
  virtual std::string apply(std::string_view text) const = 0;
};

}  // namespace vellora::companion
