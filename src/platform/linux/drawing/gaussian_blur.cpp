#include "platform/linux/drawing/gaussian_blur.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

// A separable convolution in 16-bit fixed point: samples carry 7 fractional bits, so that the sum
// of two of them, which share a weight as the kernel is symmetric, still fits 16 bits; weights are
// fractions of 65536. A product keeps its upper 16 bits, which is one instruction for 8 samples
// even on the plainest x86-64. The loops are written for the compiler to vectorise.
namespace vellora {

namespace {

constexpr int fraction = 7;
constexpr double reach = 3;  // of the kernel, in standard deviations

// Two samples at the same distance from the middle, and their weight.
template <typename Sample>
struct Pair {
  const Sample* before = nullptr;
  const Sample* after = nullptr;
  std::uint16_t weight = 0;
};

std::uint16_t upperProduct(std::uint16_t a, std::uint16_t b) {
  return static_cast<std::uint16_t>((static_cast<std::uint32_t>(a) * b) >> 16);
}

std::uint16_t widened(std::uint8_t a, std::uint8_t b) {
  return static_cast<std::uint16_t>((a + b) << fraction);
}
std::uint16_t widened(std::uint16_t a, std::uint16_t b) {
  return static_cast<std::uint16_t>(a + b);
}

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

// sums = middle × weight + bias.
template <typename Sample>
void startSums(std::uint16_t* __restrict sums, const Sample* __restrict middle,
               std::uint16_t weight, std::uint16_t bias, std::size_t count) {
  const Sample none = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = static_cast<std::uint16_t>(upperProduct(widened(middle[i], none), weight) + bias);
  }
}

// The same with a first pair, which spares narrow kernels half of their passes.
template <typename Sample>
void startSumsWithPair(std::uint16_t* __restrict sums, const Sample* __restrict middle,
                       std::uint16_t weight, std::uint16_t bias, const Pair<Sample>& pair,
                       std::size_t count) {
  const Sample* __restrict before = pair.before;
  const Sample* __restrict after = pair.after;
  const std::uint16_t pairWeight = pair.weight;
  const Sample none = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = static_cast<std::uint16_t>(upperProduct(widened(middle[i], none), weight) + bias +
                                         upperProduct(widened(before[i], after[i]), pairWeight));
  }
}

// Adds one weighted pair to the sums.
template <typename Sample>
void addPair(std::uint16_t* __restrict sums, const Pair<Sample>& pair, std::size_t count) {
  const Sample* __restrict before = pair.before;
  const Sample* __restrict after = pair.after;
  const std::uint16_t weight = pair.weight;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] =
        static_cast<std::uint16_t>(sums[i] + upperProduct(widened(before[i], after[i]), weight));
  }
}

// The same with four pairs, which spares three of four passes over the sums.
template <typename Sample>
void addFourPairs(std::uint16_t* __restrict sums, const Pair<Sample>* pairs, std::size_t count) {
  const Sample* __restrict a0 = pairs[0].before;
  const Sample* __restrict b0 = pairs[0].after;
  const Sample* __restrict a1 = pairs[1].before;
  const Sample* __restrict b1 = pairs[1].after;
  const Sample* __restrict a2 = pairs[2].before;
  const Sample* __restrict b2 = pairs[2].after;
  const Sample* __restrict a3 = pairs[3].before;
  const Sample* __restrict b3 = pairs[3].after;
  const std::uint16_t w0 = pairs[0].weight;
  const std::uint16_t w1 = pairs[1].weight;
  const std::uint16_t w2 = pairs[2].weight;
  const std::uint16_t w3 = pairs[3].weight;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = static_cast<std::uint16_t>(sums[i] + upperProduct(widened(a0[i], b0[i]), w0) +
                                         upperProduct(widened(a1[i], b1[i]), w1) +
                                         upperProduct(widened(a2[i], b2[i]), w2) +
                                         upperProduct(widened(a3[i], b3[i]), w3));
  }
}

// sums = middle × weight + bias + all pairs.
template <typename Sample>
void sumUp(std::uint16_t* sums, const Sample* middle, std::uint16_t weight, std::uint16_t bias,
           const std::vector<Pair<Sample>>& pairs, std::size_t count) {
  std::size_t next = pairs.size() % 4 == 0 ? 0 : 1;
  if (next == 0) {
    startSums(sums, middle, weight, bias, count);
  } else {
    startSumsWithPair(sums, middle, weight, bias, pairs[0], count);
  }
  for (; next + 4 <= pairs.size(); next += 4) addFourPairs(sums, pairs.data() + next, count);
  for (; next < pairs.size(); ++next) addPair(sums, pairs[next], count);
}

class Convolution {
 public:
  Convolution(const PixelRows<const std::uint8_t>& source, double sigma)
      : weights_(kernel(sigma)),
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

  void writeRow(std::size_t y, std::uint8_t* __restrict out) {
    if (!sumColumns(y)) {
      std::fill_n(out, samples_, std::uint8_t{0});
      return;
    }
    sumRow();
    const std::uint16_t* __restrict sums = sums_.data();
    for (std::size_t i = 0; i < samples_; ++i) {
      out[i] = static_cast<std::uint8_t>((sums[i] + (1 << (fraction - 1))) >> fraction);
    }
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
    std::uint16_t* sums = column_.data() + padding_;
    sumUp(sums, middle != nullptr ? middle : blank_.data(), weights_[0], bias_, columnPairs_,
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
    sumUp(sums_.data(), middle, weights_[0], bias_, rowPairs_, samples_);
  }

  std::vector<std::uint16_t> weights_;
  std::size_t samples_;                    // in a row
  std::size_t padding_;                    // transparent samples at either end of `column_`
  std::uint16_t bias_;                     // makes up for the products' lost lower halves
  std::vector<const std::uint8_t*> rows_;  // null where a row is blank
  std::vector<std::uint8_t> blank_;
  std::vector<std::uint16_t> column_;
  std::vector<std::uint16_t> sums_;
  std::vector<Pair<std::uint8_t>> columnPairs_;
  std::vector<Pair<std::uint16_t>> rowPairs_;
};

}  // namespace

void gaussianBlur(const PixelRows<const std::uint8_t>& source,
                  const PixelRows<std::uint8_t>& destination, double sigma) {
  if (!(sigma >= smallestBlur)) {
    for (std::size_t y = 0; y < source.height; ++y) {
      std::memcpy(destination.data + y * destination.stride, source.data + y * source.stride,
                  source.width * 4);
    }
    return;
  }
  Convolution convolution(source, sigma);
  for (std::size_t y = 0; y < source.height; ++y) {
    convolution.writeRow(y, destination.data + y * destination.stride);
  }
}

}  // namespace vellora
