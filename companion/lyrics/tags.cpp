#include "companion/lyrics/tags.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include <taglib/flacfile.h>
#include <taglib/id3v2frame.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mp4tag.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/synchronizedlyricsframe.h>
#include <taglib/textidentificationframe.h>
#include <taglib/unsynchronizedlyricsframe.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>
#include <unicode/locid.h>

#include "base/files.h"
#include "companion/lyrics/bounded_stream.h"
#include "companion/lyrics/id3_bounds.h"
#include "companion/lyrics/plain.h"
#include "companion/song/lrc.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// Each part that nests in another takes a piece and some hundred bytes of the stack.
constexpr BoundedStream::Bounds bounds{largestReadableFile, 20'000};
constexpr BoundedStream::Bounds nestedBounds{largestReadableFile, 4000};
// Its comments are taken into memory several times as large.
constexpr BoundedStream::Bounds oggBounds{largestReadableFile / 4, 20'000};

std::string textOf(const TagLib::String& text) { return text.to8Bit(true); }

// ISO 639-2, as ID3v2 has it, as a BCP 47 tag; "" for what is no language.
std::string languageOf(const TagLib::ByteVector& code) {
  const std::string text = lowerCase(std::string(code.data(), code.size()));
  const bool letters = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz") == std::string::npos;
  if (text.size() != 3 || !letters || text == "xxx" || text == "und") return {};
  icu::Locale locale(text.c_str());
  UErrorCode error = U_ZERO_ERROR;
  locale.canonicalize(error);
  return U_FAILURE(error) ? std::string() : std::string(locale.getLanguage());
}

bool saysTranslation(const TagLib::String& description) {
  return lowerCase(textOf(description)).find("translat") != std::string::npos;
}

// Reads only what is wanted; what else there is may be a picture, or frames within frames without
// end. What is compressed may be endless, too.
class Frames final : public TagLib::ID3v2::FrameFactory {
  // Where the header's type can be named.
  struct Naming : TagLib::ID3v2::Frame {
    using Type = TagLib::ID3v2::Frame::Header;
  };

 protected:
  bool updateFrame(Naming::Type* header) const override {
    const TagLib::ByteVector id = header->frameID();
    bool wanted = false;
    for (const char* const name : {"TIT2", "TPE1", "TALB", "TLEN", "TLAN", "USLT", "SYLT", "TT2",
                                   "TP1", "TAL", "TLE", "TLA", "ULT", "SLT"}) {
      wanted = wanted || id == name;
    }
    if (wanted && !header->compression()) return FrameFactory::updateFrame(header);
    if (header->version() > 2) {
      // Without its flags, so that nothing is unpacked.
      const unsigned size = header->frameSize();
      header->setData(TagLib::ByteVector("XXXX\0\0\0\0\0\0", 10), header->version());
      header->setFrameSize(size);
    }
    return false;
  }
};

// TagLib 2 has its arguments in another order than 1.
template <typename File>
std::unique_ptr<File> opened(TagLib::IOStream& stream, Frames& frames, bool measured) {
  using Factory = TagLib::ID3v2::FrameFactory;
  if constexpr (std::is_constructible_v<File, TagLib::IOStream*, Factory*, bool>) {
    return std::make_unique<File>(&stream, &frames, measured);
  } else {
    return std::make_unique<File>(&stream, measured, TagLib::AudioProperties::Average, &frames);
  }
}

class Reader {
 public:
  Reader(const std::string& name, std::istream& bytes, Problems& problems, AudioParts parts)
      : name_(name),
        bytes_(bytes),
        problems_(problems),
        measured_(parts == AudioParts::tagsAndLength) {
    bytes_.clear();
    bytes_.seekg(0, std::ios::end);
    size_ = static_cast<long>(bytes_.tellg());
  }

  AudioTags read(const std::string& ending) && {
    if (size_ <= 0) return {};
    if (ending == ".mp3") readMp3();
    if (ending == ".flac") readFlac();
    if (ending == ".m4a") readMp4();
    if (ending == ".ogg" || ending == ".oga" || ending == ".opus") readOgg();
    return std::move(tags_);
  }

 private:
  using Bounds = BoundedStream::Bounds;

  void tooLarge(const char* what) {
    problems_.warn(0, std::string(what) + " larger than any song's, and left out",
                   "put the lyrics into a file of their own");
  }

  void setTag(const char* key, const TagLib::String& value) {
    const std::string text = cleaned(cut(textOf(value), longestText));
    if (!text.empty()) tags_.tags.emplace(key, text);
  }
  void setNames(const TagLib::Tag& tag) {
    setTag("ti", tag.title());
    setTag("ar", tag.artist());
    setTag("al", tag.album());
  }

  void add(const TagLib::String& text, std::string language, bool translation) {
    const std::string whole = textOf(text);
    LyricFile file = readLrc(name_, whole);
    if (!file.timed()) file = readPlain(name_, whole);
    add(std::move(file), std::move(language), translation);
  }
  void add(LyricFile file, std::string language, bool translation) {
    for (const FileLine& line : file.lines) {
      if (line.text.empty()) continue;
      tags_.lyrics.push_back({std::move(file), std::move(language), translation});
      return;
    }
  }

  // What comes after its tag at the beginning is not looked at.
  void readMp3() {
    const auto end = id3End(bytes_);
    if (!end) return tooLarge("the tag is");
    BoundedStream stream(bytes_, name_, std::min(*end, size_), bounds);
    Frames frames;
    const auto file = opened<TagLib::MPEG::File>(stream, frames, false);
    if (file->isValid() && file->hasID3v2Tag()) readId3(*file->ID3v2Tag());
  }

  void readId3(const TagLib::ID3v2::Tag& tag) {
    setNames(tag);
    for (const auto* frame : tag.frameList("TLEN")) setLength(textOf(frame->toString()));
    for (const auto* frame : tag.frameList("TLAN")) {
      tags_.language = languageOf(frame->toString().data(TagLib::String::Latin1));
    }
    using TagLib::ID3v2::SynchronizedLyricsFrame;
    for (const auto* frame : tag.frameList("SYLT")) {
      const auto* const lyrics = dynamic_cast<const SynchronizedLyricsFrame*>(frame);
      if (lyrics != nullptr) addTimed(*lyrics);
    }
    for (const auto* frame : tag.frameList("USLT")) {
      const auto* const lyrics =
          dynamic_cast<const TagLib::ID3v2::UnsynchronizedLyricsFrame*>(frame);
      if (lyrics == nullptr) continue;
      add(lyrics->text(), languageOf(lyrics->language()), saysTranslation(lyrics->description()));
    }
  }

  void setLength(const std::string& milliseconds) {
    constexpr std::size_t mostDigits = 9;
    const bool number = !milliseconds.empty() && milliseconds.size() <= mostDigits &&
                        milliseconds.find_first_not_of("0123456789") == std::string::npos;
    if (number) tags_.tags.emplace("length", std::to_string(std::stol(milliseconds) / 1000));
  }

  void setLength(const TagLib::AudioProperties* sound) {
    if (sound == nullptr || sound->lengthInMilliseconds() <= 0) return;
    tags_.tags.emplace("length", std::to_string((sound->lengthInMilliseconds() + 500) / 1000));
  }

  void addTimed(const TagLib::ID3v2::SynchronizedLyricsFrame& frame) {
    using Frame = TagLib::ID3v2::SynchronizedLyricsFrame;
    const bool sung = frame.type() == Frame::Lyrics || frame.type() == Frame::TextTranscription ||
                      frame.type() == Frame::Other;
    if (!sung) return;
    const bool timed = frame.timestampFormat() == Frame::AbsoluteMilliseconds;
    LyricFile file;
    file.name = name_;
    Problems problems(name_);
    if (!timed) {
      problems.warn(0, "the times of the synchronised lyrics count MPEG frames",
                    "the lines are taken without times; write them in milliseconds");
    }
    // Where a line's pieces have times of their own, a line feed stands before a new line's first.
    const auto pieces = frame.synchedText();
    bool inPieces = false;
    for (const auto& piece : pieces) {
      inPieces = inPieces || textOf(piece.text).starts_with('\n');
    }
    std::string text;
    std::optional<double> time;
    int number = 0;
    const auto flush = [&] {
      const std::string line = cleaned(cut(std::exchange(text, {}), longestText));
      if (number > 0 && hasRoom(file, problems, number)) {
        file.lines.push_back({timed ? time : std::nullopt, line, {}, number});
      }
    };
    for (const auto& piece : pieces) {
      if (file.lines.size() >= mostLines) break;
      const std::string part = textOf(piece.text);
      if (number == 0 || !inPieces || part.starts_with('\n')) {
        flush();
        time = piece.time / 1000.0;
        ++number;
      }
      if (text.size() <= longestText) text += part;
    }
    flush();
    add(finished(std::move(file), std::move(problems), {}), languageOf(frame.language()),
        saysTranslation(frame.description()));
  }

  void readFlac() {
    if (!flacCommentsAreSmall(bytes_)) return tooLarge("the comments are");
    BoundedStream stream(bytes_, name_, size_, bounds);
    Frames frames;
    const auto file = opened<TagLib::FLAC::File>(stream, frames, measured_);
    if (file->isValid() && file->hasXiphComment()) readComments(file->xiphComment());
    setLength(file->audioProperties());
  }

  void readOgg() {
    if (readOggAs<TagLib::Vorbis::File>() || readOggAs<TagLib::Ogg::Opus::File>()) return;
    readOggAs<TagLib::Ogg::FLAC::File>();
  }

  template <typename File>
  bool readOggAs() {
    BoundedStream stream(bytes_, name_, size_, oggBounds);
    const File file(&stream, measured_);
    if (!file.isValid() || file.tag() == nullptr) return false;
    readComments(file.tag());
    setLength(file.audioProperties());
    return true;
  }

  void readComments(const TagLib::Ogg::XiphComment* comments) {
    setNames(*comments);
    const auto& fields = comments->fieldListMap();
    for (const char* const key : {"SYNCEDLYRICS", "LYRICS", "UNSYNCEDLYRICS", "UNSYNCED LYRICS"}) {
      if (!fields.contains(key)) continue;
      for (const TagLib::String& text : fields[key]) add(text, {}, false);
    }
  }

  void readMp4() {
    BoundedStream stream(bytes_, name_, size_, nestedBounds);
    const TagLib::MP4::File file(&stream, measured_);
    if (!file.isValid() || file.tag() == nullptr) return;
    setNames(*file.tag());
    setLength(file.audioProperties());
    const TagLib::MP4::Item lyrics = file.tag()->item("\251lyr");
    if (!lyrics.isValid()) return;
    for (const TagLib::String& text : lyrics.toStringList()) add(text, {}, false);
  }

  const std::string& name_;
  std::istream& bytes_;
  Problems& problems_;
  bool measured_ = false;
  long size_ = 0;
  AudioTags tags_;
};

}  // namespace

AudioTags readTags(const std::string& name, const std::string& ending, std::istream& bytes,
                   Problems& problems, AudioParts parts) {
  return Reader(name, bytes, problems, parts).read(ending);
}

}  // namespace vellora::companion
