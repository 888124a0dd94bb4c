#include "render/image_key.h"

#include <functional>

#include "base/text.h"

namespace vellora {

bool operator==(const ImageKey& a, const ImageKey& b) {
  return a.width == b.width && a.height == b.height && a.font == b.font &&
         a.softness == b.softness && a.scale == b.scale && textEquals(a.text, b.text);
}

std::size_t ImageKeyHash::operator()(const ImageKey& key) const {
  // The multiplier is 2^64 divided by the golden ratio (Knuth, volume 3, 6.4).
  constexpr std::size_t multiplier = static_cast<std::size_t>(0x9E3779B97F4A7C15ULL);
  std::size_t hash = textHash(key.text);
  for (const double number : {key.width, key.height, key.font, key.softness, key.scale}) {
    // −0 + 0 is +0, and a hash may tell the two apart.
    const std::size_t next = std::hash<double>{}(number + 0.0);
    hash = (hash ^ next) * multiplier;
    hash ^= hash >> 29;
  }
  return hash;
}

}  // namespace vellora
