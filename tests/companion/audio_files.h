#pragma once

#include <functional>
#include <string>

#include <taglib/fileref.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mp4tag.h>
#include <taglib/mpegfile.h>
#include <taglib/opusfile.h>
#include <taglib/synchronizedlyricsframe.h>
#include <taglib/tbytevectorstream.h>
#include <taglib/textidentificationframe.h>
#include <taglib/unsynchronizedlyricsframe.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

namespace vellora::companion {

// Audio files of no sound, the smallest that are one of each kind, with tags as TagLib writes them.

using namespace std::string_literals;

inline std::string littleEndian(unsigned value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
  return bytes;
}

// The file with the tags that `write` gives it.
template <typename File>
std::string tagged(const std::string& bytes, const std::function<void(File&)>& write) {
  TagLib::ByteVectorStream stream(
      TagLib::ByteVector(bytes.data(), static_cast<unsigned>(bytes.size())));
  TagLib::FileRef file(&stream, false);
  auto* const typed = dynamic_cast<File*>(file.file());
  if (typed == nullptr) return {};
  write(*typed);
  file.save();
  return {stream.data()->data(), stream.data()->size()};
}

// Two frames of MPEG 1, layer 3, 128 kbit/s, 44.1 kHz.
inline std::string emptyMp3() {
  const std::string frame = "\xFF\xFB\x90\x64"s + std::string(413, '\0');
  return frame + frame + frame;
}
inline std::string mp3(const std::function<void(TagLib::ID3v2::Tag&)>& write) {
  return tagged<TagLib::MPEG::File>(emptyMp3(),
                                    [&](TagLib::MPEG::File& file) { write(*file.ID3v2Tag(true)); });
}

using Comments = std::function<void(TagLib::Ogg::XiphComment&)>;

inline std::string bigEndian(unsigned value) {
  const std::string bytes = littleEndian(value);
  return {bytes.rbegin(), bytes.rend()};
}

// `seconds`: as long as its header says that it sounds, a day at most.
inline std::string flac(const Comments& write, unsigned seconds = 0) {
  constexpr unsigned rate = 44'100;
  const std::string information = "\x80\x00\x00\x22\x10\x00\x10\x00"s + std::string(6, '\0') +
                                  bigEndian(rate << 12U) + bigEndian(rate * seconds) +
                                  std::string(16, '\0');
  return tagged<TagLib::FLAC::File>(
      "fLaC" + information, [&](TagLib::FLAC::File& file) { write(*file.xiphComment(true)); });
}

// A page with one packet of less than 255 bytes; `end`: the samples up to its end.
inline std::string oggPage(int flags, int number, const std::string& packet, unsigned end = 0) {
  return "OggS\0"s + static_cast<char>(flags) + littleEndian(end) + littleEndian(0) +
         littleEndian(1) + littleEndian(static_cast<unsigned>(number)) + littleEndian(0) + "\x01"s +
         static_cast<char>(packet.size()) + packet;
}
inline std::string ogg(const Comments& write, unsigned seconds = 0) {
  const std::string file =
      oggPage(2, 0,
              "\x01vorbis"s + littleEndian(0) + "\x02"s + littleEndian(44100) + littleEndian(0) +
                  littleEndian(0) + littleEndian(0) + "\xB8\x01"s) +
      oggPage(0, 1, "\x03vorbis"s + littleEndian(0) + littleEndian(0) + "\x01"s) +
      oggPage(4, 2, "\x05vorbis"s + std::string(20, '\0'), seconds * 44'100);
  return tagged<TagLib::Vorbis::File>(file,
                                      [&](TagLib::Vorbis::File& typed) { write(*typed.tag()); });
}
inline std::string opus(const Comments& write, unsigned seconds = 0) {
  const std::string file =
      oggPage(2, 0, "OpusHead\x01\x02\x38\x01"s + littleEndian(48000) + "\0\0\0"s) +
      oggPage(0, 1, "OpusTags"s + littleEndian(0) + littleEndian(0)) +
      oggPage(4, 2, "\xFC"s, 312 + seconds * 48'000);
  return tagged<TagLib::Ogg::Opus::File>(
      file, [&](TagLib::Ogg::Opus::File& typed) { write(*typed.tag()); });
}

// An atom of MP4.
inline std::string atom(const std::string& name, const std::string& content) {
  return bigEndian(static_cast<unsigned>(content.size() + 8)) + name + content;
}
inline std::string m4a(const std::function<void(TagLib::MP4::Tag&)>& write, unsigned seconds = 0) {
  const std::string none(100, '\0');
  const std::string media =
      atom("hdlr", none.substr(0, 8) + "soun" + none.substr(0, 12)) +
      atom("mdhd", none.substr(0, 12) + bigEndian(1000) + bigEndian(seconds * 1000) + "\0\0\0\0"s);
  const std::string file = atom("ftyp", "M4A \0\0\0\0"s) +
                           atom("moov", atom("mvhd", none) + atom("trak", atom("mdia", media)));
  return tagged<TagLib::MP4::File>(file, [&](TagLib::MP4::File& typed) { write(*typed.tag()); });
}

inline TagLib::String utf8(const char* text) { return {text, TagLib::String::UTF8}; }

inline void addUslt(TagLib::ID3v2::Tag& tag, const char* language, const char* text,
                    const char* description = "") {
  auto* const frame = new TagLib::ID3v2::UnsynchronizedLyricsFrame(TagLib::String::UTF8);
  frame->setLanguage(language);
  frame->setDescription(description);
  frame->setText(utf8(text));
  tag.addFrame(frame);
}

using Timed = TagLib::ID3v2::SynchronizedLyricsFrame::SynchedText;
using TimedList = TagLib::ID3v2::SynchronizedLyricsFrame::SynchedTextList;

inline TimedList listOf(std::initializer_list<Timed> lines) {
  TimedList list;
  for (const Timed& line : lines) list.append(line);
  return list;
}

inline void addSylt(TagLib::ID3v2::Tag& tag, const char* language,
                    const TagLib::ID3v2::SynchronizedLyricsFrame::SynchedTextList& lines,
                    bool milliseconds = true) {
  using Frame = TagLib::ID3v2::SynchronizedLyricsFrame;
  auto* const frame = new Frame(TagLib::String::UTF8);
  frame->setLanguage(language);
  frame->setType(Frame::Lyrics);
  frame->setTimestampFormat(milliseconds ? Frame::AbsoluteMilliseconds : Frame::AbsoluteMpegFrames);
  frame->setSynchedText(lines);
  tag.addFrame(frame);
}

inline void addText(TagLib::ID3v2::Tag& tag, const char* id, const char* text) {
  auto* const frame = new TagLib::ID3v2::TextIdentificationFrame(id, TagLib::String::UTF8);
  frame->setText(utf8(text));
  tag.addFrame(frame);
}

}  // namespace vellora::companion
