#pragma once

#include <istream>
#include <optional>

namespace vellora::companion {

// Bounds that TagLib does not have: it makes an object of some hundred bytes of each part. Any
// thread.

// Where the ID3v2 tag ends that a file begins with: 0 where there is none, and nothing where it is
// larger than 16 MiB, has more than 2,000 frames, or is unsynchronised as a whole or has an
// extended header and is larger than 2 MiB.
std::optional<long> id3End(std::istream& bytes);

// Whether the comments of a FLAC file, if it is one, are at most 2 MiB and stand within its first
// 10,000 blocks.
bool flacCommentsAreSmall(std::istream& bytes);

}  // namespace vellora::companion
