#include <gtest/gtest.h>

#include "golden/golden_table.h"
#include "render/composition.h"

namespace vellora {
namespace {

TEST(FontSizesGolden, SizesAndHeightCapsFollowTheTable) {
  golden::everyRow("font-sizes.tsv", 3, [](const golden::Row& row) -> std::string {
    const double size = captionFontSize(golden::number(row[0]));
    const double cap = captionHeightCap(size);
    if (size != golden::number(row[1])) return "size " + std::to_string(size);
    if (cap != golden::number(row[2])) return "cap " + std::to_string(cap);
    return "";
  });
}

}  // namespace
}  // namespace vellora
