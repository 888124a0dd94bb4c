#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vellora::companion {

// What translates, and between which languages.
struct TranslationManner {
  std::string command;
  std::string from;  // BCP 47, or "" where nothing tells it
  std::string to;
};

// Translations that a program has made, a file for each song, in a folder for the user alone. A
// file that is damaged, or of another text, command or language, is none; what cannot be written is
// not kept. One thread.
class TranslationCache {
 public:
  static constexpr std::size_t mostFiles = 5000;

  // `folder`: made when something is first kept; where it is empty, nothing is. `most`: of the
  // files, beyond which those go that nobody has asked for in the longest time.
  explicit TranslationCache(std::filesystem::path folder, std::size_t most = mostFiles);

  std::optional<std::vector<std::string>> find(const TranslationManner& manner,
                                               const std::vector<std::string>& lines) const;
  // As many translations as lines; none of either has a line feed or a tab.
  void keep(const TranslationManner& manner, const std::vector<std::string>& lines,
            const std::vector<std::string>& translations) const;

 private:
  void makeRoom() const;

  std::filesystem::path folder_;
  std::size_t most_;
};

}  // namespace vellora::companion
