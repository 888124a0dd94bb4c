#include "platform/linux/drawing/blur_loops.h"

// A product of 16-bit numbers keeps its upper 16 bits, which is one instruction for 8 samples even
// on the plainest x86-64. The loops are written for the compiler to vectorise. They are inlined
// into functions for several kinds of processors, and therefore call nothing that another file
// might have too: the linker would keep one of these for all.
namespace vellora {
namespace {

[[gnu::always_inline]] inline std::uint16_t upperProduct(std::uint16_t a, std::uint16_t b) {
  return static_cast<std::uint16_t>((static_cast<std::uint32_t>(a) * b) >> 16);
}

[[gnu::always_inline]] inline std::uint16_t widened(std::uint8_t a, std::uint8_t b) {
  return static_cast<std::uint16_t>((a + b) << blurFraction);
}
[[gnu::always_inline]] inline std::uint16_t widened(std::uint16_t a, std::uint16_t b) {
  return static_cast<std::uint16_t>(a + b);
}

// sums = middle × weight + bias.
template <typename Sample>
[[gnu::always_inline]] inline void startSums(std::uint16_t* __restrict sums,
                                             const Sample* __restrict middle, std::uint16_t weight,
                                             std::uint16_t bias, std::size_t count) {
  const Sample none = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = static_cast<std::uint16_t>(upperProduct(widened(middle[i], none), weight) + bias);
  }
}

// The same with a first pair, which spares narrow kernels half of their passes.
template <typename Sample>
[[gnu::always_inline]] inline void startSumsWithPair(std::uint16_t* __restrict sums,
                                                     const Sample* __restrict middle,
                                                     std::uint16_t weight, std::uint16_t bias,
                                                     const WeightedPair<Sample>& pair,
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
[[gnu::always_inline]] inline void addPair(std::uint16_t* __restrict sums,
                                           const WeightedPair<Sample>& pair, std::size_t count) {
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
[[gnu::always_inline]] inline void addFourPairs(std::uint16_t* __restrict sums,
                                                const WeightedPair<Sample>* pairs,
                                                std::size_t count) {
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
[[gnu::always_inline]] inline void sumUp(std::uint16_t* sums, const WeightedRows<Sample>& rows,
                                         std::size_t count) {
  std::size_t next = rows.pairCount % 4 == 0 ? 0 : 1;
  if (next == 0) {
    startSums(sums, rows.middle, rows.weight, rows.bias, count);
  } else {
    startSumsWithPair(sums, rows.middle, rows.weight, rows.bias, rows.pairs[0], count);
  }
  for (; next + 4 <= rows.pairCount; next += 4) addFourPairs(sums, rows.pairs + next, count);
  for (; next < rows.pairCount; ++next) addPair(sums, rows.pairs[next], count);
}

[[gnu::always_inline]] inline void roundAll(std::uint8_t* __restrict bytes,
                                            const std::uint16_t* __restrict sums,
                                            std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<std::uint8_t>((sums[i] + (1 << (blurFraction - 1))) >> blurFraction);
  }
}

namespace plain {

void sumBytes(std::uint16_t* sums, const WeightedRows<std::uint8_t>& rows, std::size_t count) {
  sumUp(sums, rows, count);
}
void sumSums(std::uint16_t* sums, const WeightedRows<std::uint16_t>& rows, std::size_t count) {
  sumUp(sums, rows, count);
}
void round(std::uint8_t* bytes, const std::uint16_t* sums, std::size_t count) {
  roundAll(bytes, sums, count);
}
constexpr BlurLoops loops{sumBytes, sumSums, round};

}  // namespace plain

#ifdef __x86_64__
namespace avx2 {

[[gnu::target("avx2")]] void sumBytes(std::uint16_t* sums, const WeightedRows<std::uint8_t>& rows,
                                      std::size_t count) {
  sumUp(sums, rows, count);
}
[[gnu::target("avx2")]] void sumSums(std::uint16_t* sums, const WeightedRows<std::uint16_t>& rows,
                                     std::size_t count) {
  sumUp(sums, rows, count);
}
[[gnu::target("avx2")]] void round(std::uint8_t* bytes, const std::uint16_t* sums,
                                   std::size_t count) {
  roundAll(bytes, sums, count);
}
constexpr BlurLoops loops{sumBytes, sumSums, round};

}  // namespace avx2
#endif

}  // namespace

const BlurLoops& plainBlurLoops() { return plain::loops; }

const BlurLoops& fastestBlurLoops() {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) return avx2::loops;
#endif
  return plain::loops;
}

}  // namespace vellora
