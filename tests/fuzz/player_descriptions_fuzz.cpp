#include <algorithm>
#include <string>

#include "base/utf8.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/players/element_pattern.h"
#include "platform/linux/players/key_file_text.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {

namespace {

using KeyFile = std::unique_ptr<GKeyFile, GRelease<g_key_file_unref>>;

// What is accepted is what GKeyFile reads in the text.
void requireAsGKeyFileReads(const std::string& text) {
  const KeyFile file(g_key_file_new());
  require(g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE,
                                    nullptr) != FALSE,
          "an accepted key file");
  const auto groups = readKeyFile(text, [](int, std::string, std::string) {});
  for (const KeyFileGroup& group : groups) {
    for (const KeyFileEntry& entry : group.entries) {
      const GCharPtr value(
          g_key_file_get_value(file.get(), group.name.c_str(), entry.key.c_str(), nullptr));
      require(value && value.get() == entry.value, "a value of a key file");
    }
  }
}

// A glob by hand: each part of the text for a star.
bool plainFits(std::string_view glob, std::string_view text) {
  if (glob.empty()) return text.empty();
  if (glob[0] == '*') {
    for (std::size_t taken = 0; taken <= text.size(); ++taken) {
      if (plainFits(glob.substr(1), text.substr(taken))) return true;
    }
    return false;
  }
  return !text.empty() && (glob[0] == text[0]) && plainFits(glob.substr(1), text.substr(1));
}

void requireGlob(const std::string& glob, const std::string& text) {
  if (!isAscii(glob) || !isAscii(text) || glob.find('?') != std::string::npos) return;
  if (glob.find('\0') != std::string::npos || text.find('\0') != std::string::npos) return;
  if (std::ranges::count(glob, '*') > 3) return;
  require(fitsGlob(glob, text) == plainFits(glob, text), "a glob");
}

}  // namespace

void fuzzPlayerDescriptions(std::string_view bytes) {
  const std::string text(bytes);
  const ReadDescription read = readDescription(text, "/name.player");
  require((read.description == nullptr) == !read.problems.empty(), "a description or problems");
  const auto lines = static_cast<int>(std::ranges::count(text, '\n')) + 1;
  for (const DescriptionProblem& problem : read.problems) {
    require(problem.line >= 0 && problem.line <= lines, "a problem's line");
    require(!problem.text.empty() && !problem.remedy.empty(), "a problem's text");
    const std::string told = lineOf(problem);
    require(isWellFormed(told) && told.size() < 1100, "a problem in print");
    require(std::ranges::none_of(told, [](unsigned char c) { return c < 0x20 || c == 0x7f; }),
            "a problem without control characters");
  }
  if (read.description) {
    requireAsGKeyFileReads(text);
    const std::string address = read.description->documents.empty()
                                    ? "https://a.example/"
                                    : read.description->documents.front();
    descriptionsForPage(address, {read.description});
  }
  const std::size_t middle = std::min<std::size_t>(text.find('\n'), text.size());
  requireGlob(text.substr(0, std::min<std::size_t>(middle, 40)),
              text.substr(middle, std::min<std::size_t>(text.size() - middle, 60)));
}

}  // namespace vellora
