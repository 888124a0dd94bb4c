#pragma once

#include <cstddef>
#include <cstdint>

namespace vellora {

// The fixed point of the blur's sums: samples of 8 bits carry this many fractional bits in 16.
inline constexpr int blurFraction = 7;

// Two rows of samples at the same distance from a middle one, and their weight, a fraction of
// 65536.
template <typename Sample>
struct WeightedPair {
  const Sample* before = nullptr;
  const Sample* after = nullptr;
  std::uint16_t weight = 0;
};

// A middle row of samples, with its weight, and the pairs around it.
template <typename Sample>
struct WeightedRows {
  const Sample* middle = nullptr;
  std::uint16_t weight = 0;
  std::uint16_t bias = 0;  // to be added to each sum
  const WeightedPair<Sample>* pairs = nullptr;
  std::size_t pairCount = 0;
};

// The loops in which the blur spends its time, over `count` samples. `sums` is other memory than
// what is read.
struct BlurLoops {
  // Of bytes, and of what the former has written.
  void (*sumBytes)(std::uint16_t* sums, const WeightedRows<std::uint8_t>& rows, std::size_t count);
  void (*sumSums)(std::uint16_t* sums, const WeightedRows<std::uint16_t>& rows, std::size_t count);
  // Rounds sums to bytes.
  void (*round)(std::uint8_t* bytes, const std::uint16_t* sums, std::size_t count);
};

// With instructions that every processor of this architecture has.
const BlurLoops& plainBlurLoops();
// The fastest that this processor has; the results are the same to the bit. Any thread.
const BlurLoops& fastestBlurLoops();

}  // namespace vellora
