#pragma once

#include <span>
#include <string_view>

namespace vellora {

// What a fuzzer, or the replay of what it found, calls with bytes of any kind. Each runs one parser
// or algorithm and ends the process where a promise of its header is broken. Returns to the same
// state at every call. Main thread.
void fuzzRecords(std::string_view bytes);
void fuzzOpenedUrls(std::string_view bytes);
void fuzzScriptReplies(std::string_view bytes);
void fuzzLookup(std::string_view bytes);
void fuzzLayoutWalk(std::string_view bytes);
void fuzzGeometry(std::string_view bytes);
void fuzzComposition(std::string_view bytes);
void fuzzCaptionPainting(std::string_view bytes);
void fuzzAccessibilityReplies(std::string_view bytes);
void fuzzMprisReplies(std::string_view bytes);
void fuzzLyricFiles(std::string_view bytes);
void fuzzPlayerDescriptions(std::string_view bytes);
void fuzzServiceAnswers(std::string_view bytes);
void fuzzCompositorWords(std::string_view bytes);

struct FuzzTarget {
  std::string_view name;  // of its folder in tests/fuzz/corpus, too
  void (*run)(std::string_view bytes);
};

inline constexpr FuzzTarget fuzzTargets[] = {
    {"records", fuzzRecords},
    {"opened-urls", fuzzOpenedUrls},
    {"script-replies", fuzzScriptReplies},
    {"lookup", fuzzLookup},
    {"layout-walk", fuzzLayoutWalk},
    {"geometry", fuzzGeometry},
    {"composition", fuzzComposition},
    {"caption-painting", fuzzCaptionPainting},
    {"accessibility-replies", fuzzAccessibilityReplies},
    {"mpris-replies", fuzzMprisReplies},
    {"lyric-files", fuzzLyricFiles},
    {"player-descriptions", fuzzPlayerDescriptions},
    {"service-answers", fuzzServiceAnswers},
    {"compositor-words", fuzzCompositorWords},
};

// Null for a name that is none.
inline const FuzzTarget* fuzzTarget(std::string_view name) {
  for (const FuzzTarget& target : std::span(fuzzTargets)) {
    if (target.name == name) return &target;
  }
  return nullptr;
}

}  // namespace vellora
