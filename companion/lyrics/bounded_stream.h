#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <utility>

#include <taglib/tiostream.h>

namespace vellora::companion {

// The types of TagLib 1, or those of TagLib 2.
template <typename Start, typename Count>
Start startOf(void (TagLib::IOStream::*)(Start, Count));
template <typename Start, typename Count>
Count countOf(void (TagLib::IOStream::*)(Start, Count));
using StreamStart = decltype(startOf(&TagLib::IOStream::removeBlock));
using StreamCount = decltype(countOf(&TagLib::IOStream::removeBlock));
using StreamOffset = decltype(std::declval<TagLib::IOStream&>().length());

// A file as TagLib reads it: for reading alone, and of no more bytes, nor in more pieces, than its
// bounds allow. Beyond them it is as if the file were cut. One thread.
class BoundedStream final : public TagLib::IOStream {
 public:
  struct Bounds {
    std::size_t bytes = 0;   // that are read in all
    std::size_t pieces = 0;  // TagLib follows nested parts by recursion, a piece or more each
  };

  // `length`: at most so much of the file is there.
  BoundedStream(std::istream& bytes, std::string name, StreamOffset length, Bounds bounds)
      : bytes_(bytes), name_(std::move(name)), length_(length), bounds_(bounds) {}

  TagLib::FileName name() const override { return name_.c_str(); }
  TagLib::ByteVector readBlock(StreamCount length) override;
  void writeBlock(const TagLib::ByteVector&) override {}
  void insert(const TagLib::ByteVector&, StreamStart, StreamCount) override {}
  void removeBlock(StreamStart, StreamCount) override {}
  bool readOnly() const override { return true; }
  bool isOpen() const override { return true; }
  void seek(StreamOffset offset, Position from) override;
  StreamOffset tell() const override { return at_; }
  StreamOffset length() override { return length_; }
  void truncate(StreamOffset) override {}

 private:
  std::istream& bytes_;
  std::string name_;
  StreamOffset length_;
  StreamOffset at_ = 0;
  Bounds bounds_;
};

}  // namespace vellora::companion
