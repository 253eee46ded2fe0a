#include "playlist/tag_readers_taglib.h"

#include "playlist/id3v2_texts.h"
#include "playlist/media_bytes.h"
#include "playlist/mpeg_frames.h"
#include "system/shown_text.h"
#include "system/translation.h"
#include "system/utf8.h"

#include <taglib/id3v1genres.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/tbytevectorstream.h>
#include <taglib/textidentificationframe.h>
#include <taglib/xingheader.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace kv {
namespace {

// How far behind the tags sound is sought; most files begin with it.
constexpr std::size_t kFirstLook = std::size_t{64} * 1024;
constexpr std::size_t kFarLook = std::size_t{1024} * 1024;
constexpr std::size_t kSignatureBytes = 16;

constexpr std::size_t kLongestText = 1000;  // characters

// Sane limits of an average bit rate, kbit/s.
constexpr double kLeastBitrate = 1;
constexpr double kMostBitrate = 1000;

std::string ToUtf8(const TagLib::String& text) {
  return text.to8Bit(true);
}

std::string NameOfGenre(int number) {
  return number < 0 || number > 255 ? std::string() : ToUtf8(TagLib::ID3v1::genre(number));
}

// ---- MPEG audio

class MpegHeaderInfoTagLib : public MpegHeaderInfo {
 public:
  bool IsValid(const std::string& path) override {
    start_.reset();
    const auto stream = OpenMedia(path);
    if (!stream) return false;
    const SoundRange sound = FindSound(*stream);
    const auto size = static_cast<std::size_t>(sound.end - sound.begin);
    if (IsOtherContainer(ReadBytes(*stream, sound.begin, std::min(size, kSignatureBytes)))) {
      return false;
    }
    std::string bytes;
    for (const std::size_t look : {kFirstLook, kFarLook}) {
      bytes = ReadBytes(*stream, sound.begin, std::min(size, look));
      start_ = FindMpegStart(bytes);
      if (start_ || size <= look) break;
    }
    if (!start_) return false;
    Measure(std::string_view(bytes).substr(start_->offset),
            static_cast<double>(size - start_->offset));
    return true;
  }

  double Duration() const override { return start_ ? duration_ : 0; }
  int Bitrate() const override { return start_ ? static_cast<int>(std::lround(bitrate_)) : 0; }
  int Frequency() const override { return start_ ? start_->frame.frequency : 0; }
  int HeaderValue() const override { return start_ ? start_->frame.second_byte : 0; }

  std::string Mode() const override {
    constexpr std::array kModes = {TrLater("Stereo"), TrLater("Joint stereo"),
                                   TrLater("Dual channel"), TrLater("Mono")};
    return start_ ? kModes[static_cast<std::size_t>(start_->frame.mode)] : "";
  }

 private:
  // From the totals that an encoder has left in the first frame, as far as they agree with each
  // other; else from the bit rate and `stream_bytes`.
  void Measure(std::string_view bytes, double stream_bytes) {
    const MpegFrame& frame = start_->frame;
    bitrate_ = start_->average_bitrate;
    duration_ = stream_bytes * 8 / (bitrate_ * 1000);
    const std::string_view first = bytes.substr(0, frame.length);
    const TagLib::MPEG::XingHeader totals(
        TagLib::ByteVector(first.data(), static_cast<unsigned>(first.size())));
    if (!totals.isValid()) return;
    const double seconds = static_cast<double>(totals.totalFrames()) * frame.samples /
                           static_cast<double>(frame.frequency);
    const double kilobits = static_cast<double>(totals.totalSize()) * 8 / 1000;
    if (seconds <= 0 || kilobits < kLeastBitrate * seconds || kilobits > kMostBitrate * seconds) {
      return;
    }
    duration_ = seconds;
    bitrate_ = kilobits / seconds;
  }

  std::optional<MpegStart> start_;
  double duration_ = 0;  // seconds
  double bitrate_ = 0;   // kbit/s
};

// ---- Tags

// What both kinds of tag hold, already fit to be shown.
class TagReaderBase : public TagReader {
 public:
  void Load(const std::string& path) override {
    fields_ = {};
    const auto stream = OpenMedia(path);
    if (stream) Read(*stream);
  }
  bool HasTag() const override { return fields_.has_tag; }
  std::string Title() const override { return fields_.title; }
  void SetTitle(const std::string& title) override { fields_.title = title; }
  std::string Artist() const override { return fields_.artist; }
  std::string Album() const override { return fields_.album; }
  int Genre() const override { return fields_.genre; }
  std::string GenreName(int number) const override {
    return number == fields_.genre && !fields_.genre_name.empty() ? fields_.genre_name
                                                                  : NameOfGenre(number);
  }

 protected:
  struct Fields {
    bool has_tag = false;
    std::string title;
    std::string artist;
    std::string album;
    int genre = -1;
    std::string genre_name;
  };
  virtual void Read(TagLib::IOStream& stream) = 0;
  Fields fields_;
};

// `text` without a character that its end cuts.
std::string_view WithoutCutCharacter(std::string_view text) {
  for (std::size_t back = 1; back <= 3 && back <= text.size(); ++back) {
    const auto byte = static_cast<unsigned char>(text[text.size() - back]);
    if (byte >= 0x80 && byte < 0xC0) continue;
    const std::size_t size = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return size > back ? text.substr(0, text.size() - back) : text;
  }
  return text;
}

bool IsUtf8BeyondAscii(std::string_view text) {
  bool beyond = false;
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    if (!next.valid) return false;
    beyond = beyond || next.size > 1;
    at += next.size;
  }
  return beyond;
}

// A text of an ID3v1 tag is ISO 8859-1 by its standard, and UTF-8 from many a program since: what
// is well-formed UTF-8, but for a character that the end of the field cuts, is taken for that.
std::string Id3v1Text(std::string_view field) {
  const std::size_t end = field.find('\0');
  const std::string_view text = field.substr(0, end);
  const std::string_view whole = end == std::string_view::npos ? WithoutCutCharacter(text) : text;
  if (IsUtf8BeyondAscii(whole)) return ShownText(whole, kLongestText);
  std::string latin;
  for (const char c : text) AppendUtf8(latin, static_cast<unsigned char>(c));
  return ShownText(latin, kLongestText);
}

class Id3v1Reader : public TagReaderBase {
 private:
  void Read(TagLib::IOStream& stream) override {
    const auto at = FindId3v1(stream);
    if (!at) return;
    const std::string tag = ReadBytes(stream, *at, kId3v1Bytes);
    if (tag.size() != kId3v1Bytes) return;
    const std::string_view bytes = tag;
    fields_.has_tag = true;
    fields_.title = Id3v1Text(bytes.substr(3, 30));
    fields_.artist = Id3v1Text(bytes.substr(33, 30));
    fields_.album = Id3v1Text(bytes.substr(63, 30));
    const auto genre = static_cast<unsigned char>(bytes[127]);
    if (!NameOfGenre(genre).empty()) fields_.genre = genre;
  }
};

class Id3v2Reader : public TagReaderBase {
 private:
  void Read(TagLib::IOStream& stream) override {
    const std::string small = TextsOfId3v2(stream);
    if (small.empty()) return;
    fields_.has_tag = true;
    TagLib::ByteVectorStream bytes(
        TagLib::ByteVector(small.data(), static_cast<unsigned>(small.size())));
    TagLib::MPEG::File file(&bytes, TagLib::ID3v2::FrameFactory::instance(), false);
    const TagLib::ID3v2::Tag* tag = file.ID3v2Tag();
    if (tag == nullptr) return;
    fields_.title = Joined(Values(*tag, "TIT2"));
    fields_.artist = Joined(Values(*tag, "TPE1"));
    fields_.album = Joined(Values(*tag, "TALB"));
    ReadGenre(Values(*tag, "TCON"));
  }

  static std::vector<std::string> Values(const TagLib::ID3v2::Tag& tag, const char* id) {
    std::vector<std::string> values;
    const TagLib::ID3v2::FrameList& frames = tag.frameList(id);
    if (frames.isEmpty()) return values;
    const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frames.front());
    if (text == nullptr) return values;
    for (const TagLib::String& value : text->fieldList()) {
      std::string shown = ShownText(ToUtf8(value), kLongestText);
      if (!shown.empty()) values.push_back(std::move(shown));
    }
    return values;
  }

  static std::string Joined(const std::vector<std::string>& values) {
    std::string all;
    for (const std::string& value : values) {
      if (all.size() > kLongestText) break;
      all += (all.empty() ? "" : " / ") + value;
    }
    return ShownText(all, kLongestText);
  }

  // A genre is a number, a name, or both; the old way to write a number, in parentheses before the
  // name, comes apart in the library.
  void ReadGenre(const std::vector<std::string>& values) {
    std::vector<std::string> names;
    for (const std::string& value : values) {
      int number = -1;
      std::string name = value;
      if (value.size() <= 3 && value.find_first_not_of("0123456789") == std::string::npos) {
        number = std::stoi(value);
        name = NameOfGenre(number);
        if (name.empty()) continue;
      } else if (value == "RX" || value == "CR") {
        name = value == "RX" ? "Remix" : "Cover";
      } else if (const int known =
                     TagLib::ID3v1::genreIndex(TagLib::String(value, TagLib::String::UTF8));
                 known < 192) {
        number = known;
      }
      if (fields_.genre < 0) fields_.genre = number;
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    fields_.genre_name = Joined(names);
  }
};

}  // namespace

std::unique_ptr<MpegHeaderInfo> TagLibReaders::MakeMpegHeaderInfo() const {
  return std::make_unique<MpegHeaderInfoTagLib>();
}

std::unique_ptr<TagReader> TagLibReaders::MakeTagReaderPrimary() const {
  return std::make_unique<Id3v1Reader>();
}

std::unique_ptr<TagReader> TagLibReaders::MakeTagReaderSecondary() const {
  return std::make_unique<Id3v2Reader>();
}

}  // namespace kv
