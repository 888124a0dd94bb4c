#include "render/image_key.h"

#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

const ImageKey key{"caf\u00E9", 100, 20, 19.5, 0.125, 2};

TEST(ImageKeyTest, EqualKeysHaveEqualHashes) {
  ImageKey other = key;
  other.text = "cafe\u0301";
  EXPECT_EQ(key, other);
  EXPECT_EQ(ImageKeyHash{}(key), ImageKeyHash{}(other));
}

TEST(ImageKeyTest, EveryNumberCountsInEqualityAndInTheHash) {
  for (double ImageKey::*const number : {&ImageKey::width, &ImageKey::height, &ImageKey::font,
                                         &ImageKey::softness, &ImageKey::scale}) {
    ImageKey other = key;
    other.*number += 1;
    EXPECT_NE(key, other);
    EXPECT_NE(ImageKeyHash{}(key), ImageKeyHash{}(other));

    ImageKey zero = key;
    ImageKey negativeZero = key;
    zero.*number = 0.0;
    negativeZero.*number = -0.0;
    EXPECT_EQ(zero, negativeZero);
    EXPECT_EQ(ImageKeyHash{}(zero), ImageKeyHash{}(negativeZero));
  }
}

TEST(ImageKeyTest, TheHashDependsOnWhichNumberIsWhich) {
  ImageKey turned = key;
  std::swap(turned.width, turned.height);
  EXPECT_NE(ImageKeyHash{}(key), ImageKeyHash{}(turned));
}

TEST(ImageKeyTest, ANumberThatIsNoneEqualsNothing) {
  ImageKey odd = key;
  odd.softness = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(odd == odd);
}

}  // namespace
}  // namespace vellora
