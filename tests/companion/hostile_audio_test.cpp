// What hostile audio files may cost: each bound of audio.h, at its edge and beyond.
#include <algorithm>
#include <filesystem>
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "base/files.h"
#include "companion/audio_files.h"
#include "companion/lines_text.h"
#include "companion/lyrics/bounded_stream.h"
#include "companion/lyrics/id3_bounds.h"
#include "companion/lyrics/reading.h"
#include "companion/lyrics/tags.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

using TagLib::ID3v2::Tag;

constexpr std::size_t mebibyte = 1024 * 1024;

void expectBounded(const LyricFile& file) {
  ASSERT_LE(file.lines.size(), mostLines);
  ASSERT_LE(file.problems.size(), 4 * Problems::most);
  for (const FileLine& line : file.lines) ASSERT_EQ(cleaned(line.text), line.text);
}

std::string sevenBits(std::size_t size) {
  std::string bytes;
  for (int shift = 21; shift >= 0; shift -= 7) {
    bytes.push_back(static_cast<char>((size >> shift) & 0x7F));
  }
  return bytes;
}

// ID3v2.4 with that size, whatever follows.
std::string id3Header(std::size_t size, char flags = 0) {
  return "ID3\x04\0"s + flags + sevenBits(size);
}

std::string id3Frame(const char* id, const std::string& content, char flags = 0) {
  return id + sevenBits(content.size()) + '\0' + flags + content;
}

std::string id3(const std::string& frames) { return id3Header(frames.size()) + frames; }

std::optional<long> endOf(const std::string& bytes) {
  std::istringstream stream(bytes);
  return id3End(stream);
}

bool smallComments(const std::string& bytes) {
  std::istringstream stream(bytes);
  return flacCommentsAreSmall(stream);
}

std::string repeated(const std::string& part, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += part;
  return result;
}

TEST(HostileAudio, TheEndOfATagIsKnownUpToItsBounds) {
  EXPECT_EQ(endOf("no tag at all"), 0);
  EXPECT_EQ(endOf("ID3"), 0);
  EXPECT_EQ(endOf(id3Header(100)), 110);
  EXPECT_EQ(endOf(id3Header(16 * mebibyte - 10)), 16 * mebibyte);
  EXPECT_EQ(endOf(id3Header(16 * mebibyte - 9)), std::nullopt);
  constexpr char unsynchronised = '\x80';
  EXPECT_EQ(endOf(id3Header(2 * mebibyte - 10, unsynchronised)), 2 * mebibyte);
  EXPECT_EQ(endOf(id3Header(2 * mebibyte - 9, unsynchronised)), std::nullopt);
  constexpr char extended = '\x40';
  EXPECT_EQ(endOf(id3Header(2 * mebibyte - 10, extended)), 2 * mebibyte);
  EXPECT_EQ(endOf(id3Header(2 * mebibyte - 9, extended)), std::nullopt);
  const std::string frame = id3Frame("TIT2", "\0"s);
  EXPECT_EQ(endOf(id3(repeated(frame, 2000))), 10 + 2000 * 11);
  EXPECT_EQ(endOf(id3(repeated(frame, 2001))), std::nullopt);
  const std::string old = "TT2\0\0\1\0"s;
  EXPECT_EQ(endOf("ID3\x02\0\0"s + sevenBits(2001 * 7) + repeated(old, 2001)), std::nullopt);
  // With eight bits of a size in a byte, which some programs wrote.
  const std::string wrong = "TIT2" + bigEndian(200) + "\0\0"s + std::string(200, '\0');
  EXPECT_EQ(endOf(id3(repeated(wrong, 2001))), std::nullopt);
  const std::string unclear = "TIT2" + bigEndian(0x148) + "\0\0"s + std::string(0x148, '\0');
  EXPECT_EQ(endOf(id3(repeated(unclear, 2001))), std::nullopt) << "as the next frame tells";
}

TEST(HostileAudio, CommentsOfFlacAreSmallUpToTheirBounds) {
  EXPECT_TRUE(smallComments("fLaC\x84\x20\0\0"s));
  EXPECT_FALSE(smallComments("fLaC\x84\x20\0\1"s)) << "2 MiB and a byte";
  EXPECT_TRUE(smallComments("fLaC\x86\x20\0\1"s)) << "a picture";
  const std::string block = "\1\0\0\0"s;
  const std::string last = "\x81\0\0\0"s;
  EXPECT_TRUE(smallComments("fLaC" + repeated(block, 9999) + last));
  EXPECT_FALSE(smallComments("fLaC" + repeated(block, 10'000) + last));
}

TEST(HostileAudio, TagsThatAreTooLargeAreLeftOutAndTold) {
  const std::string told =
      ": warning: the tag is larger than any song's, and left out; put the lyrics into a file of "
      "their own";
  EXPECT_EQ(textOf(readLyrics("a.mp3", id3Header(100'000'000) + "x", "").problems), "a.mp3" + told);
  const std::string comments = "fLaC\x84\x30\x00\x00"s;  // 3 MiB
  EXPECT_EQ(readLyrics("a.flac", comments, "").problems.size(), 1U);
}

TEST(HostileAudio, AStreamGivesNoMoreThanItsBounds) {
  std::istringstream ten("0123456789");
  BoundedStream few(ten, "a", 10, {5, 100});
  EXPECT_EQ(few.readBlock(3), "012");
  EXPECT_EQ(few.readBlock(3), "34");
  EXPECT_EQ(few.readBlock(3), "");
  BoundedStream twice(ten, "a", 10, {100, 2});
  EXPECT_EQ(twice.readBlock(1), "0");
  EXPECT_EQ(twice.readBlock(1), "1");
  EXPECT_EQ(twice.readBlock(1), "");
  BoundedStream eight(ten, "a", 8, {100, 100});
  eight.seek(6, BoundedStream::Beginning);
  EXPECT_EQ(eight.readBlock(10), "67");
  EXPECT_EQ(eight.readBlock(10), "");
  eight.seek(9, BoundedStream::Beginning);
  EXPECT_EQ(eight.readBlock(1), "") << "behind its end";
  eight.seek(-1, BoundedStream::End);
  EXPECT_EQ(eight.readBlock(10), "7");
  eight.seek(-100, BoundedStream::Current);
  EXPECT_EQ(eight.tell(), 0);
}

// Counts what is read of it.
class CountedBytes : public std::stringbuf {
 public:
  explicit CountedBytes(const std::string& file) : std::stringbuf(file, std::ios::in) {}
  std::size_t bytes = 0;
  std::size_t pieces = 0;

 protected:
  std::streamsize xsgetn(char* to, std::streamsize count) override {
    const std::streamsize given = std::stringbuf::xsgetn(to, count);
    bytes += static_cast<std::size_t>(given);
    ++pieces;
    return given;
  }
};

struct Cost {
  std::size_t bytes = 0;
  std::size_t pieces = 0;
};

Cost costOf(const char* name, const std::string& file) {
  CountedBytes bytes(file);
  std::istream stream(&bytes);
  Problems problems(name);
  readTags(name, std::filesystem::path(name).extension(), stream, problems,
           AudioParts::tagsAndLength);
  return {bytes.bytes, bytes.pieces};
}

TEST(HostileAudio, OfSoundNothingIsRead) {
  EXPECT_LT(costOf("a.mp3", std::string(mebibyte, '\xFF')).bytes, 100U);
}

TEST(HostileAudio, ManyPicturesAreNotAllRead) {
  const std::string picture = "\x06\xF0\0\0"s + std::string(15 * mebibyte, '\0');
  const std::string information = "fLaC\0\0\0\x22"s + std::string(34, '\0');
  const Cost cost = costOf("a.flac", information + picture + picture + "\x81\0\0\0"s);
  EXPECT_GT(cost.bytes, 15 * mebibyte) << "one is";
  EXPECT_LT(cost.bytes, 17 * mebibyte);

  const std::string cover =
      atom("covr", atom("data", "\0\0\0\x0D"s + std::string(15 * mebibyte, '\0')));
  const std::string items = atom("meta", "\0\0\0\0"s + atom("ilst", cover + cover));
  const std::string file = atom("ftyp", "M4A \0\0\0\0"s) + atom("moov", atom("udta", items));
  const Cost nested = costOf("a.m4a", file);
  EXPECT_GT(nested.bytes, 15 * mebibyte);
  EXPECT_LT(nested.bytes, 17 * mebibyte);
}

// Of the comments, which go on through all pages.
std::string pageOfComments(int number, std::size_t segments) {
  const bool first = number == 1;
  const std::string start = first ? "\x03vorbis"s : "0000000"s;
  return "OggS\0"s + (first ? '\0' : '\1') + std::string(8, '\0') + littleEndian(1) +
         littleEndian(static_cast<unsigned>(number)) + littleEndian(0) +
         static_cast<char>(segments) + std::string(segments, '\xFF') + start +
         std::string(255 * segments - start.size(), '\0');
}

Cost costOfComments(int pages, std::size_t segments) {
  std::string file = oggPage(2, 0, "\x01vorbis"s + std::string(23, '\0'));
  for (int i = 1; i <= pages; ++i) file += pageOfComments(i, segments);
  constexpr int continued = 1;
  return costOf("a.ogg", file + oggPage(continued, pages + 1, "\1"));
}

TEST(HostileAudio, ManySmallPartsAreNotAllRead) {
  EXPECT_GT(costOfComments(1000, 1).pieces, 2000U);
  EXPECT_LT(costOfComments(12'000, 1).pieces, 20'100U);
  const std::string atoms = atom("ftyp", "M4A \0\0\0\0"s) + repeated(atom("free", ""), 10'000);
  EXPECT_LT(costOf("a.m4a", atoms).pieces, 4100U);
}

TEST(HostileAudio, LargeCommentsOfOggAreNotAllRead) {
  EXPECT_GT(costOfComments(20, 255).bytes, mebibyte);
  EXPECT_LT(costOfComments(200, 255).bytes, 5 * mebibyte);
}

TEST(HostileAudio, DeepNestingEnds) {
  // Each atom's size is that of the rest of the file.
  constexpr unsigned depth = 1'000'000;
  std::string deep = atom("ftyp", "M4A \0\0\0\0"s);
  for (unsigned i = 0; i < depth; ++i) deep.append(bigEndian((depth - i) * 8)).append("moov");
  expectBounded(readLyrics("a.m4a", deep, ""));
  // Chapters within chapters.
  const std::string header = "a\0"s + std::string(16, '\0');
  std::string chapters;
  constexpr std::size_t levels = 300'000;
  for (std::size_t i = 0; i < levels; ++i) {
    chapters += "CHAP" + sevenBits((levels - i - 1) * 28 + 18) + "\0\0"s + header;
  }
  ASSERT_EQ(endOf(id3(chapters)), 10 + levels * 28) << "no other bound keeps them out";
  expectBounded(readLyrics("a.mp3", id3(chapters), ""));
}

// So many zeros, 2064 for each of `rounds`, as zlib packs them: eight times a zero and 257 copies.
std::string packedZeros(unsigned rounds) {
  std::string bits =
      "110"
      "00110000";  // the last block, of fixed codes; a zero
  const std::string copies = repeated(
      "11000101"
      "00000",
      8);  // 258 of what is one before
  for (unsigned i = 0; i < rounds; ++i) bits += copies;
  bits += "0000000";
  bits.resize((bits.size() + 7) / 8 * 8, '0');
  std::string packed = "\x78\x9C";
  for (std::size_t i = 0; i < bits.size(); i += 8) {
    int byte = 0;
    for (std::size_t j = 0; j < 8; ++j) byte |= (bits[i + j] - '0') << j;
    packed.push_back(static_cast<char>(byte));
  }
  return packed + bigEndian((rounds * 2064 + 1) % 65'521 << 16U | 1U);
}

long mostMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(HostileAudio, NothingIsUnpacked) {
  constexpr char packed = 0x09;  // with the length that it has unpacked
  const std::string zeros = "\x0F\x7F\x7F\x7F" + packedZeros(250'000);
  for (const char* const id : {"USLT", "GEOB"}) {
    const std::string file = id3(id3Frame(id, zeros, packed));
    const long before = mostMemory();
    EXPECT_TRUE(readLyrics("a.mp3", file, "").lines.empty());
    EXPECT_LT(mostMemory(), 3 * before) << id << ": half a gigabyte";
  }
}

TEST(HostileAudio, NamesAndLengthsAreBounded) {
  const LyricFile file = readLyrics("a.mp3", mp3([](Tag& tag) {
                                      tag.setTitle(std::string(5000, 'x'));
                                      addText(tag, "TLEN", "99999999999999999999");
                                    }),
                                    "");
  EXPECT_EQ(file.tags.at("ti").size(), longestText);
  EXPECT_FALSE(file.tags.contains("length"));
}

TEST(HostileAudio, TimedLinesAreBounded) {
  TimedList lines;
  for (unsigned i = 0; i < mostLines + 10; ++i) lines.append(Timed(i, std::string(i % 2000, 'x')));
  const LyricFile file =
      readLyrics("a.mp3", mp3([&](Tag& tag) { addSylt(tag, "eng", lines); }), "");
  EXPECT_EQ(file.lines.size(), mostLines);
  for (const FileLine& line : file.lines) ASSERT_LE(line.text.size(), longestText);
}

// Every file cut anywhere, and with bytes changed.
TEST(HostileAudio, DamagedFilesHarmNothing) {
  const auto comments = [](TagLib::Ogg::XiphComment& to) {
    to.setTitle("t");
    to.addField("LYRICS", "[00:01.00]a\n[00:02.00]b");
  };
  const std::pair<const char*, std::string> files[] = {
      {"a.mp3", mp3([](Tag& tag) {
         tag.setTitle("t");
         addUslt(tag, "eng", "a\nb");
         addSylt(tag, "deu", listOf({Timed(1000, "A"), Timed(2000, "\nB")}));
       })},
      {"a.flac", flac(comments)},
      {"a.ogg", ogg(comments)},
      {"a.opus", opus(comments)},
      {"a.m4a",
       m4a([](TagLib::MP4::Tag& tag) { tag.setItem("\251lyr", TagLib::StringList("a\nb")); })}};
  std::mt19937 random(20261122);
  for (const auto& [name, bytes] : files) {
    ASSERT_FALSE(readLyrics(name, bytes, "").lines.empty()) << name;
    const std::size_t interesting = std::min<std::size_t>(bytes.size(), 400);
    for (std::size_t length = 0; length < interesting; ++length) {
      expectBounded(readLyrics(name, bytes.substr(0, length), "de"));
      costOf(name, bytes.substr(0, length));
    }
    for (int round = 0; round < 300; ++round) {
      std::string damaged = bytes;
      for (unsigned i = 0; i <= random() % 4; ++i) {
        damaged[random() % interesting] = static_cast<char>(random());
      }
      expectBounded(readLyrics(name, damaged, "de"));
      costOf(name, damaged);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

}  // namespace
}  // namespace vellora::companion
