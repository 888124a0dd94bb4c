#include "companion/lyrics/bounded_stream.h"

#include <algorithm>

namespace vellora::companion {

TagLib::ByteVector BoundedStream::readBlock(StreamCount length) {
  if (at_ < 0 || at_ >= length_ || bounds_.pieces == 0) return {};
  --bounds_.pieces;
  const std::size_t size =
      std::min<std::size_t>({length, static_cast<std::size_t>(length_ - at_), bounds_.bytes});
  TagLib::ByteVector block(static_cast<unsigned>(size), 0);
  bytes_.clear();
  bytes_.seekg(at_);
  bytes_.read(block.data(), static_cast<std::streamsize>(size));
  const auto count = static_cast<std::size_t>(std::max<std::streamsize>(bytes_.gcount(), 0));
  block.resize(static_cast<unsigned>(count));
  bounds_.bytes -= count;
  at_ += static_cast<StreamOffset>(count);
  return block;
}

void BoundedStream::seek(StreamOffset offset, Position from) {
  if (from == Current) offset += at_;
  if (from == End) offset += length_;
  at_ = std::max<StreamOffset>(offset, 0);
}

}  // namespace vellora::companion
