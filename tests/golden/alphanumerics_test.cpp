#include <gtest/gtest.h>

#include "golden/character_set.h"
#include "platform/text_services.h"

namespace vellora {
namespace {

TEST(GoldenTest, Alphanumerics) {
  golden::checkSet("alphanumerics.tsv", [](char32_t c) { return TextServices::isAlphanumeric(c); });
}

}  // namespace
}  // namespace vellora
