#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/drawing/gaussian_blur.h"

namespace vellora {
namespace {

struct Image {
  Image(std::size_t width_, std::size_t height_, std::size_t stride_ = 0)
      : width(width_),
        height(height_),
        stride(stride_ == 0 ? width_ * 4 : stride_),
        bytes(stride * height_) {}

  std::uint8_t& at(std::size_t x, std::size_t y, std::size_t channel) {
    return bytes[y * stride + x * 4 + channel];
  }
  std::uint8_t at(std::size_t x, std::size_t y, std::size_t channel) const {
    return bytes[y * stride + x * 4 + channel];
  }
  PixelRows<const std::uint8_t> source() const { return {bytes.data(), width, height, stride}; }
  PixelRows<std::uint8_t> destination() { return {bytes.data(), width, height, stride}; }

  std::size_t width, height, stride;
  std::vector<std::uint8_t> bytes;
};

// Premultiplied noise with a transparent frame around it; channel 3 is alpha.
Image noise(std::size_t width, std::size_t height, std::size_t frame) {
  std::mt19937 random(7);
  Image image(width, height);
  for (std::size_t y = frame; y + frame < height; ++y) {
    for (std::size_t x = frame; x + frame < width; ++x) {
      const auto alpha = static_cast<std::uint8_t>(random() % 256);
      for (std::size_t c = 0; c < 3; ++c) {
        image.at(x, y, c) = static_cast<std::uint8_t>(random() % (alpha + 1U));
      }
      image.at(x, y, 3) = alpha;
    }
  }
  return image;
}

Image blurred(const Image& image, double sigma, const BlurLoops& loops = fastestBlurLoops()) {
  Image result(image.width, image.height, image.stride);
  std::ranges::fill(result.bytes, std::uint8_t{77});
  gaussianBlur(image.source(), result.destination(), sigma, loops);
  return result;
}

// The plain sum over all pixels within eight standard deviations, one axis after the other.
std::vector<double> exactly(const Image& image, double sigma) {
  const auto radius = static_cast<std::ptrdiff_t>(std::ceil(8 * sigma));
  double total = 0;
  std::vector<double> weights;
  for (std::ptrdiff_t k = -radius; k <= radius; ++k) {
    const auto distance = static_cast<double>(k);
    weights.push_back(std::exp(-distance * distance / (2 * sigma * sigma)));
    total += weights.back();
  }
  const auto width = static_cast<std::ptrdiff_t>(image.width);
  const auto height = static_cast<std::ptrdiff_t>(image.height);
  const auto index = [&](std::ptrdiff_t x, std::ptrdiff_t y, std::size_t c) {
    return static_cast<std::size_t>(y * width + x) * 4 + c;
  };
  std::vector<double> columns(image.width * image.height * 4);
  std::vector<double> result(columns.size());
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    for (std::ptrdiff_t x = 0; x < width; ++x) {
      for (std::size_t c = 0; c < 4; ++c) {
        for (std::ptrdiff_t k = -radius; k <= radius; ++k) {
          if (y + k < 0 || y + k >= height) continue;
          columns[index(x, y, c)] +=
              weights[static_cast<std::size_t>(k + radius)] / total *
              image.at(static_cast<std::size_t>(x), static_cast<std::size_t>(y + k), c);
        }
      }
    }
  }
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    for (std::ptrdiff_t x = 0; x < width; ++x) {
      for (std::size_t c = 0; c < 4; ++c) {
        for (std::ptrdiff_t k = -radius; k <= radius; ++k) {
          if (x + k < 0 || x + k >= width) continue;
          result[index(x, y, c)] +=
              weights[static_cast<std::size_t>(k + radius)] / total * columns[index(x + k, y, c)];
        }
      }
    }
  }
  return result;
}

double largestError(const Image& image, double sigma) {
  const Image result = blurred(image, sigma);
  const std::vector<double> expected = exactly(image, sigma);
  double largest = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    largest = std::max(largest, std::abs(result.bytes[i] - expected[i]));
  }
  return largest;
}

TEST(BlurTest, IsWithinOneUnitOfTheExactConvolution) {
  for (const double sigma : {0.17, 0.325, 0.65, 1.3, 2.6, 3.9, 5.2, 7.8, 20.0, largestBlur}) {
    EXPECT_LE(largestError(noise(90, 40, 6), sigma), 1.0) << "sigma " << sigma;
  }
}

TEST(BlurTest, IsTheSameToTheBitWithTheFastestLoopsAsWithThePlainOnes) {
  for (const double sigma : {0.17, 0.325, 0.65, 1.3, 1.7, 2.6, 3.9, 5.2, 20.0, largestBlur}) {
    for (const std::size_t width : {1, 2, 7, 8, 9, 16, 33, 90}) {
      const Image image = noise(width, 40, width > 10 ? 5 : 0);
      EXPECT_EQ(blurred(image, sigma).bytes, blurred(image, sigma, plainBlurLoops()).bytes)
          << "sigma " << sigma << ", width " << width;
    }
  }
}

TEST(BlurTest, ImagesSmallerThanTheKernelAreExactToo) {
  for (const auto& [width, height] :
       {std::pair<std::size_t, std::size_t>{1, 1}, {1, 50}, {50, 1}, {3, 2}, {17, 5}}) {
    EXPECT_LE(largestError(noise(width, height, 0), 5.2), 1.0) << width << " × " << height;
  }
}

TEST(BlurTest, OutsideTheImageIsTransparent) {
  Image image(40, 40);
  std::ranges::fill(image.bytes, std::uint8_t{255});
  const Image result = blurred(image, 2.6);
  // At an edge half of the kernel and half of its middle weight, 0.1534, lie inside.
  EXPECT_NEAR(result.at(0, 20, 3), 255 * 0.5767, 2);
  EXPECT_NEAR(result.at(0, 0, 3), 255 * 0.5767 * 0.5767, 2);
  EXPECT_EQ(result.at(20, 20, 3), 255);
}

TEST(BlurTest, ASinglePixelSpreadsEvenlyToAllSides) {
  Image image(41, 41);
  image.at(20, 20, 1) = 255;
  const Image result = blurred(image, 1.3);
  for (std::size_t distance = 0; distance < 5; ++distance) {
    EXPECT_EQ(result.at(20 - distance, 20, 1), result.at(20 + distance, 20, 1));
    EXPECT_EQ(result.at(20 - distance, 20, 1), result.at(20, 20 + distance, 1));
    EXPECT_EQ(result.at(20 - distance, 20, 1), result.at(20, 20 - distance, 1));
  }
  EXPECT_GT(result.at(21, 20, 1), 0);
  EXPECT_EQ(result.at(20, 20, 0), 0);
  EXPECT_EQ(result.at(20, 20, 3), 0);
}

TEST(BlurTest, PremultipliedColoursStayWithinTheirAlpha) {
  for (const double sigma : {0.325, 2.6, 5.2}) {
    const Image result = blurred(noise(80, 40, 4), sigma);
    for (std::size_t i = 0; i < result.bytes.size(); i += 4) {
      for (std::size_t c = 0; c < 3; ++c) ASSERT_LE(result.bytes[i + c], result.bytes[i + 3]);
    }
  }
}

TEST(BlurTest, BelowTheSmallestRadiusTheImageComesBackAsItIs) {
  const Image image = noise(30, 20, 0);
  EXPECT_EQ(blurred(image, 0.15).bytes, image.bytes);
  EXPECT_EQ(blurred(image, 0).bytes, image.bytes);
  EXPECT_EQ(blurred(image, -2.6).bytes, image.bytes);
  EXPECT_NE(blurred(image, 0.325).bytes, image.bytes);
}

TEST(BlurTest, ATransparentImageStaysTransparentAtEveryRadius) {
  const Image image(60, 30);
  for (const double sigma : {0.325, 5.2, 40.0, largestBlur}) {
    EXPECT_EQ(blurred(image, sigma).bytes, image.bytes) << "sigma " << sigma;
  }
}

TEST(BlurTest, FarFromAllContentNothingIsLeftOver) {
  Image image(400, 9);
  for (std::size_t y = 0; y < 9; ++y) image.at(0, y, 3) = 255;
  const Image result = blurred(image, 20);
  for (std::size_t y = 0; y < 9; ++y) EXPECT_EQ(result.at(399, y, 3), 0);
}

TEST(BlurTest, BytesBetweenTheRowsAreNeitherReadNorWritten) {
  Image image(5, 6, 5 * 4 + 12);
  std::ranges::fill(image.bytes, std::uint8_t{255});
  for (std::size_t y = 0; y < 6; ++y) {
    for (std::size_t x = 0; x < 5; ++x) {
      for (std::size_t c = 0; c < 4; ++c) image.at(x, y, c) = 0;
    }
  }
  const Image result = blurred(image, 2.6);
  for (std::size_t y = 0; y < 6; ++y) {
    for (std::size_t i = 0; i < 32; ++i) {
      EXPECT_EQ(result.bytes[y * 32 + i], i < 20 ? 0 : 77);
    }
  }
}

}  // namespace
}  // namespace vellora
