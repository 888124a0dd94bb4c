#include "platform/linux/drawing/gaussian_blur.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

// A separable convolution in 16-bit fixed point: samples carry 7 fractional bits, so that the sum
// of two of them, which share a weight as the kernel is symmetric, still fits 16 bits; weights are
// fractions of 65536.
namespace vellora {

namespace {

constexpr double reach = 3;  // of the kernel, in standard deviations

// Weights from the middle outwards; the middle and twice the others add up to 65536.
std::vector<std::uint16_t> kernel(double sigma) {
  const auto radius = static_cast<std::size_t>(std::ceil(reach * sigma));
  std::vector<double> exact(radius + 1);
  double total = 0;
  for (std::size_t k = 0; k <= radius; ++k) {
    const auto distance = static_cast<double>(k);
    exact[k] = std::exp(-distance * distance / (2 * sigma * sigma));
    total += k == 0 ? exact[k] : 2 * exact[k];
  }
  std::vector<std::uint16_t> weights(radius + 1);
  double rest = 65536;
  for (std::size_t k = 1; k <= radius; ++k) {
    weights[k] = static_cast<std::uint16_t>(std::lround(exact[k] / total * 65536));
    rest -= 2.0 * weights[k];
  }
  weights[0] = static_cast<std::uint16_t>(std::min(rest, 65535.0));
  return weights;
}

class Convolution {
 public:
  Convolution(const PixelRows<const std::uint8_t>& source, double sigma, const BlurLoops& loops)
      : loops_(loops),
        weights_(kernel(sigma)),
        samples_(source.width * 4),
        padding_((weights_.size() - 1) * 4),
        bias_(static_cast<std::uint16_t>(std::min<std::size_t>(weights_.size() / 2, 16))),
        rows_(source.height),
        blank_(samples_),
        column_(samples_ + 2 * padding_),
        sums_(samples_) {
    // Rows without content are known, for a caption's margins have many.
    for (std::size_t y = 0; y < source.height; ++y) {
      const std::uint8_t* row = source.data + y * source.stride;
      if (std::memcmp(row, blank_.data(), samples_) != 0) rows_[y] = row;
    }
  }

  void writeRow(std::size_t y, std::uint8_t* out) {
    if (!sumColumns(y)) {
      std::fill_n(out, samples_, std::uint8_t{0});
      return;
    }
    sumRow();
    loops_.round(out, sums_.data(), samples_);
  }

 private:
  const std::uint8_t* rowAt(std::size_t y) const { return y < rows_.size() ? rows_[y] : nullptr; }

  // The weighted sum of the rows around `y`, into `column_`; false where all of them are blank.
  bool sumColumns(std::size_t y) {
    columnPairs_.clear();
    for (std::size_t k = 1; k < weights_.size(); ++k) {
      const std::uint8_t* above = k <= y ? rowAt(y - k) : nullptr;
      const std::uint8_t* below = rowAt(y + k);
      if (above == nullptr && below == nullptr) continue;
      columnPairs_.push_back({above != nullptr ? above : blank_.data(),
                              below != nullptr ? below : blank_.data(), weights_[k]});
    }
    const std::uint8_t* middle = rowAt(y);
    if (middle == nullptr && columnPairs_.empty()) return false;
    loops_.sumBytes(column_.data() + padding_,
                    {middle != nullptr ? middle : blank_.data(), weights_[0], bias_,
                     columnPairs_.data(), columnPairs_.size()},
                    samples_);
    return true;
  }

  // The weighted sum of the columns around each sample of `column_`, into `sums_`.
  void sumRow() {
    const std::uint16_t* middle = column_.data() + padding_;
    rowPairs_.clear();
    for (std::size_t k = 1; k < weights_.size(); ++k) {
      rowPairs_.push_back({middle - 4 * k, middle + 4 * k, weights_[k]});
    }
    loops_.sumSums(sums_.data(), {middle, weights_[0], bias_, rowPairs_.data(), rowPairs_.size()},
                   samples_);
  }

  const BlurLoops& loops_;
  std::vector<std::uint16_t> weights_;
  std::size_t samples_;                    // in a row
  std::size_t padding_;                    // transparent samples at either end of `column_`
  std::uint16_t bias_;                     // makes up for the products' lost lower halves
  std::vector<const std::uint8_t*> rows_;  // null where a row is blank
  std::vector<std::uint8_t> blank_;
  std::vector<std::uint16_t> column_;
  std::vector<std::uint16_t> sums_;
  std::vector<WeightedPair<std::uint8_t>> columnPairs_;
  std::vector<WeightedPair<std::uint16_t>> rowPairs_;
};

}  // namespace

void gaussianBlur(const PixelRows<const std::uint8_t>& source,
                  const PixelRows<std::uint8_t>& destination, double sigma,
                  const BlurLoops& loops) {
  if (!(sigma >= smallestBlur)) {
    for (std::size_t y = 0; y < source.height; ++y) {
      std::memcpy(destination.data + y * destination.stride, source.data + y * source.stride,
                  source.width * 4);
    }
    return;
  }
  Convolution convolution(source, sigma, loops);
  for (std::size_t y = 0; y < source.height; ++y) {
    convolution.writeRow(y, destination.data + y * destination.stride);
  }
}

}  // namespace vellora
