#include "companion/song/script.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/utf8.h"

namespace vellora::companion {
namespace {

struct Block {
  char32_t first, last;
  Script script;
};

// Blocks of the Unicode standard.
constexpr std::array<Block, 18> blocks{{{'A', 'Z', Script::latin},
                                        {'a', 'z', Script::latin},
                                        {0xC0, 0x24F, Script::latin},
                                        {0x1E00, 0x1EFF, Script::latin},
                                        {0x370, 0x3FF, Script::greek},
                                        {0x1F00, 0x1FFF, Script::greek},
                                        {0x400, 0x52F, Script::cyrillic},
                                        {0x590, 0x77F, Script::arabicOrHebrew},
                                        {0x900, 0xDFF, Script::indic},
                                        {0xE00, 0xE7F, Script::thai},
                                        {0x1100, 0x11FF, Script::korean},
                                        {0x3130, 0x318F, Script::korean},
                                        {0xAC00, 0xD7AF, Script::korean},
                                        {0x3040, 0x30FA, Script::japanese},
                                        {0x3105, 0x312F, Script::han},
                                        {0x3400, 0x4DBF, Script::han},
                                        {0x4E00, 0x9FFF, Script::han},
                                        {0x20000, 0x3FFFF, Script::han}}};

}  // namespace

Script scriptOf(std::string_view text) {
  std::array<std::size_t, static_cast<std::size_t>(Script::korean) + 1> counts{};
  for (std::size_t offset = 0; offset < text.size();) {
    const char32_t character = nextCharacter(text, offset);
    const auto* const block = std::ranges::find_if(
        blocks, [&](const Block& one) { return character >= one.first && character <= one.last; });
    if (block != blocks.end()) ++counts[static_cast<std::size_t>(block->script)];
  }
  for (const Script script : {Script::japanese, Script::korean}) {
    if (counts[static_cast<std::size_t>(script)] > 0) return script;
  }
  const auto* const most = std::ranges::max_element(counts);
  return *most == 0 ? Script::none : static_cast<Script>(most - counts.begin());
}

}  // namespace vellora::companion
