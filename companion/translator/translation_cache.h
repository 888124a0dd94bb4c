#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "companion/cache/cache_folder.h"

namespace vellora::companion {

// What translates, and between which languages.
struct TranslationManner {
  std::string command;
  std::string from;  // BCP 47, or "" where nothing tells it
  std::string to;
};

// Translations that a program has made, a file for each song (see CacheFolder). A file that is
// damaged, or of another text, command or language, is none. One thread.
class TranslationCache {
 public:
  // `folder`: made when something is first kept; where it is empty, nothing is.
  explicit TranslationCache(std::filesystem::path folder, CacheLimits limits = {});

  std::optional<std::vector<std::string>> find(const TranslationManner& manner,
                                               const std::vector<std::string>& lines) const;
  // As many translations as lines; none of either has a line feed or a tab.
  void keep(const TranslationManner& manner, const std::vector<std::string>& lines,
            const std::vector<std::string>& translations) const;

 private:
  CacheFolder files_;
};

}  // namespace vellora::companion
