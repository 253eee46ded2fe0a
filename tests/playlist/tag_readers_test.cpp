// The readers against files made here byte by byte, as good and bad programs write them.
#include "playlist/tag_readers_taglib.h"
#include "support/temp_folder.h"

#include <cmath>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

using namespace std::string_literals;

std::string BigEndian(std::size_t value, unsigned bytes, unsigned bits = 8) {
  std::string text;
  for (unsigned i = bytes; i-- > 0;) {
    text += static_cast<char>((value >> (i * bits)) & ((1U << bits) - 1));
  }
  return text;
}

// MPEG 1, layer III, 44100 Hz; 128 kbit/s takes 417 bytes.
std::string Mp3Frame(char bitrate_byte = '\x90', std::size_t length = 417,
                     std::string_view content = "") {
  std::string frame = "\xFF\xFB"s + bitrate_byte + '\x64';
  frame += content;
  frame.resize(length, '\0');
  return frame;
}

std::string Repeat(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

std::string VbrFrame(const std::string& fields) {
  return Mp3Frame('\x90', 417, std::string(32, '\0') + fields);
}

std::string Id3v2(int version, const std::string& frames, unsigned flags = 0) {
  return "ID3"s + static_cast<char>(version) + '\0' + static_cast<char>(flags) +
         BigEndian(frames.size(), 4, 7) + frames;
}

std::string Frame2(const std::string& id, const std::string& body) {
  return id + BigEndian(body.size(), 3) + body;
}
std::string Frame3(const std::string& id, const std::string& body) {
  return id + BigEndian(body.size(), 4) + "\0\0"s + body;
}
std::string Frame4(const std::string& id, const std::string& body) {
  return id + BigEndian(body.size(), 4, 7) + "\0\0"s + body;
}

std::string Id3v1(const std::string& title, const std::string& artist, const std::string& album,
                  char genre) {
  const auto field = [](std::string text) {
    text.resize(30, '\0');
    return text;
  };
  return "TAG" + field(title) + field(artist) + field(album) + std::string(34, '\0') + genre;
}

struct TagReadersTest : testing::Test {
  std::string Header(const std::string& bytes) { return HeaderOf(temp.Write("a.mp3", bytes)); }
  // "kbit/s Hz mode second byte, tenths of seconds", or "no".
  std::string HeaderOf(const std::string& path) {
    const auto header = readers.MakeMpegHeaderInfo();
    if (!header->IsValid(path)) return "no";
    return std::to_string(header->Bitrate()) + " " + std::to_string(header->Frequency()) + " " +
           header->Mode() + " " + std::to_string(header->HeaderValue()) + ", " +
           std::to_string(std::lround(header->Duration() * 10));
  }
  std::string Tag(TagReader& reader, const std::string& bytes) {
    reader.Load(temp.Write("a.mp3", bytes));
    if (!reader.HasTag()) return "no";
    return reader.Title() + "|" + reader.Artist() + "|" + reader.Album() + "|" +
           std::to_string(reader.Genre()) + "|" + reader.GenreName(reader.Genre());
  }
  std::string V1(const std::string& bytes) { return Tag(*readers.MakeTagReaderPrimary(), bytes); }
  std::string V2(const std::string& bytes) { return Tag(*readers.MakeTagReaderSecondary(), bytes); }

  TempFolder temp;
  TagLibReaders readers;
  const std::string sound = Repeat(100, Mp3Frame());  // 2.6 seconds
  const std::string heard = "128 44100 Joint stereo 251, 26";
};

TEST_F(TagReadersTest, MeasuresMpegAudio) {
  const std::string picture_tag =
      Id3v2(3, Frame3("APIC", Repeat(20'000, "\xFF\xFB\x90\x64 and so on")));
  const std::string frames = BigEndian(1000, 4), bytes = BigEndian(522'449, 4);
  const std::string varying = "160 44100 Joint stereo 251, 261", xing = "Xing" + BigEndian(3, 4);
  const std::string vbri = "VBRI" + BigEndian(1, 2) + BigEndian(0, 4);
  const struct {
    const char* what;
    std::string bytes, header;
  } rows[] = {
      {"plain", sound, heard},
      {"the second cut", Mp3Frame() + Mp3Frame().substr(0, 50), "128 44100 Joint stereo 251, 0"},
      {"behind two tags", Id3v2(4, "") + picture_tag + sound, heard},
      {"behind garbage", picture_tag + Repeat(200'000, "\xFF\xE3xy.") + sound, heard},
      {"behind a tag of a wrong size", "ID3\3\0\0\x7F\x7F\x7F\x7F"s + sound, heard},
      {"before tags",
       sound + "APETAGEX" + "\xD0\7\0\0"s + BigEndian(80'000, 4) + std::string(16, '\0') +
           Id3v1("", "", "", 0),
       heard},
      {"Xing", VbrFrame(xing + frames + bytes) + sound, varying},
      {"Xing that lies", VbrFrame(xing + "\xFF\xFF\xFF\xFF\0\0\0\1"s) + sound, heard},
      {"VBRI", VbrFrame(vbri + bytes + frames) + sound, varying},
      {"varying", Repeat(50, Mp3Frame() + Mp3Frame('\xA0', 522)), "144 44100 Joint stereo 251, 26"},
      {"dual channel, MPEG 2", Repeat(100, "\xFF\xF3\x80\x80"s + std::string(204, '\0')),
       "64 22050 Dual channel 243, 26"},
      {"MPEG 2.5, protected", Repeat(100, "\xFF\xE2\x80\0"s + std::string(413, '\0')),
       "64 11025 Stereo 226, 52"},
      {"layer I", Repeat(100, "\xFF\xFF\xC6\0"s + std::string(384, '\0')),
       "384 48000 Stereo 255, 8"},
  };
  for (const auto& row : rows) EXPECT_EQ(Header(row.bytes), row.header) << row.what;
}

TEST_F(TagReadersTest, TakesNothingElseForMpegAudio) {
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same bytes each time
  std::string noise(3'000'000, '\0');
  for (char& c : noise) c = static_cast<char>(random());
  const std::string chunk = "chunk" + Repeat(7, Mp3Frame());
  const std::pair<const char*, std::string> rows[] = {
      {"one frame", Mp3Frame()},
      {"noise", noise},
      {"WAV with MPEG sound", "RIFF\0\0\0\0WAVEfmt "s + sound},
      {"FLAC behind a tag", Id3v2(3, Frame3("TIT2", "\0x"s)) + "fLaC" + sound},
      {"MP4", "\0\0\0 ftypisom"s + sound},
      {"Matroska", "\x1A\x45\xDF\xA3" + sound},
      {"chunks of a container", Repeat(200, chunk)},
      {"ADTS", Repeat(100, "\xFF\xF1\x50\x80"s + std::string(413, '\0'))},
      {"free format", Repeat(100, Mp3Frame('\0'))},
      {"too far away", std::string(1'200'000, 'x') + sound},
      {"a tag alone", Id3v2(3, Frame3("TIT2", "\0x"s))},
  };
  for (const auto& [what, bytes] : rows) EXPECT_EQ(Header(bytes), "no") << what;
}

TEST_F(TagReadersTest, OpensPlainFilesAlone) {
  const std::string fifo = temp.Path("fifo.mp3");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string odd = temp.Write("n\xFF\xC3 .mp3", Id3v2(3, Frame3("TIT2", "\0x"s)) + sound);
  for (const std::string& path :
       {fifo, temp.Path(), "/dev/zero"s, temp.Path("gone"), ""s, odd + '\0' + ".mp3"}) {
    EXPECT_EQ(HeaderOf(path), "no") << path;
    for (const auto& reader : {readers.MakeTagReaderPrimary(), readers.MakeTagReaderSecondary()}) {
      reader->Load(path);
      EXPECT_FALSE(reader->HasTag()) << path;
      EXPECT_EQ(reader->GenreName(reader->Genre()), "") << path;
    }
  }
  EXPECT_EQ(HeaderOf(odd), heard);
  const auto reader = readers.MakeTagReaderSecondary();
  reader->Load(odd);
  EXPECT_EQ(reader->Title(), "x");
  reader->SetTitle("other");
  EXPECT_EQ(reader->Title(), "other");
  reader->Load(temp.Path("gone"));
  EXPECT_FALSE(reader->HasTag());  // nothing of the last file stays
}

TEST_F(TagReadersTest, ReadsId3v1) {
  const std::string full(26, 'x');
  const struct {
    const char* what;
    std::string bytes, tag;
  } rows[] = {
      {"plain", sound + Id3v1("Title ", "Artist", "Album", 17), "Title|Artist|Album|17|Rock"},
      {"no genre", Id3v1("", "\n", "", '\xFF'), "|||-1|"},
      {"Latin-1", Id3v1("\xC4rger", full + "xxx\xE9", "", 0),
       "\u00C4rger|" + full + "xxx\u00E9||0|Blues"},
      {"UTF-8", Id3v1("\u00C4rger", full + "\u00E9x\xE2", full + "\u00E9\u00E9", 0),
       "\u00C4rger|" + full + "\u00E9x|" + full + "\u00E9\u00E9|0|Blues"},
      {"none", sound, "no"},
      {"an APE footer", std::string(200, 'x') + "APETAGEX" + std::string(123, '\0'), "no"},
  };
  for (const auto& row : rows) EXPECT_EQ(V1(row.bytes), row.tag) << row.what;
}

TEST_F(TagReadersTest, ReadsId3v2) {
  const std::string title = Frame3("TIT2", "\0Title"s);
  const std::string picture = Frame3("APIC", std::string(300, 'p'));
  const std::string utf16 = "\1\xFF\xFE\xC4\0r\0"s;
  const struct {
    const char* what;
    std::string bytes, tag;
  } rows[] = {
      {"2.2",
       Id3v2(2, Frame2("TT2", "\0T"s) + Frame2("TP1", "\0A"s) + Frame2("TAL", "\0B"s) +
                    Frame2("TCO", "\0(17)"s)),
       "T|A|B|17|Rock"},
      {"2.3", Id3v2(3, picture + title + Frame3("TPE1", utf16) + Frame3("TALB", "\0\xC4"s)),
       "Title|\u00C4r|\u00C4|-1|"},
      {"2.4", Id3v2(4, Frame4("TIT2", "\3\u0416\0two\0"s) + Frame4("TPE1", "\2\0A\0B"s)),
       "\u0416 / two|AB||-1|"},
      {"2.4 with sizes of 2.3", Id3v2(4, picture + Frame4("TIT2", "\0x"s)), "x|||-1|"},
      {"2.4 with a footer",
       Id3v2(4, Frame4("TIT2", "\0x"s), 0x10) + "3DI\4\0\x10"s + BigEndian(12, 4, 7), "x|||-1|"},
      {"extended header 2.3", Id3v2(3, "\0\0\0\6\0\0\0\0\0\0"s + title, 0x40), "Title|||-1|"},
      {"extended header 2.4", Id3v2(4, "\0\0\0\6\1\0"s + Frame4("TIT2", "\0x"s), 0x40), "x|||-1|"},
      {"unsynchronised 2.3",
       Id3v2(3, Frame3("TPE1", "\0\xFFz"s) + Frame3("TIT2", "\1\xFF\xFE\xC4\0"s), 0x80),  // raw
       "\u00C4|\u00FFz||-1|"},
      {"at the end",
       sound + Id3v2(4, Frame4("TIT2", "\0x"s), 0x10) + "3DI\4\0\x10"s + BigEndian(12, 4, 7) +
           Id3v1("", "", "", 0),
       "x|||-1|"},
      {"the first of two", Id3v2(3, title + Frame3("TIT2", "\0other"s)), "Title|||-1|"},
      {"cut file", Id3v2(3, title + picture).substr(0, 100), "Title|||-1|"},
      {"other frames only", Id3v2(3, picture), "|||-1|"},
      {"a frame larger than the tag", Id3v2(3, "TIT2\0\1\0\0\0\0\0x"s), "no"},
      {"no tag", sound, "no"},
      {"of the future", Id3v2(5, title), "no"},
      {"size of eight bits", "ID3\3\0\0\0\0\0\x80"s + title, "no"},
  };
  for (const auto& row : rows) EXPECT_EQ(V2(row.bytes), row.tag) << row.what;
}

TEST_F(TagReadersTest, NamesGenres) {
  const std::pair<std::string, std::string> rows[] = {{"17", "17|Rock"},
                                                      {"(17)", "17|Rock"},
                                                      {"(17)Rock", "17|Rock"},
                                                      {"(4)Eurodisco", "4|Disco / Eurodisco"},
                                                      {"(51)(39)", "51|Techno-Industrial / Noise"},
                                                      {"My own", "-1|My own"},
                                                      {"(RX)", "-1|Remix"},
                                                      {"(250)", "-1|"},
                                                      {"", "-1|"}};
  for (const auto& [text, genre] : rows) {
    EXPECT_EQ(V2(Id3v2(3, Frame3("TCON", '\0' + text))), "|||" + genre) << text;
  }
  const auto reader = readers.MakeTagReaderPrimary();
  EXPECT_EQ(reader->GenreName(0), "Blues");
  for (const int number : {-1, 192, 255, 256, 1'000'000}) EXPECT_EQ(reader->GenreName(number), "");
}

TEST_F(TagReadersTest, StaysWithinBoundsWhateverATagClaims) {
  const std::string title = Frame3("TIT2", "\0x"s);
  // Chapters inside chapters, and more frames than anybody reads.
  std::string nested = title;
  for (int i = 0; i < 3000; ++i) nested = Frame3("CHAP", "c\0"s.append(16, '\0').append(nested));
  EXPECT_EQ(V2(Id3v2(3, nested + title)), "x|||-1|");
  EXPECT_EQ(V2(Id3v2(3, Repeat(5000, Frame3("PRIV", "")) + title)), "|||-1|");
  const std::string long_title = V2(Id3v2(4, Frame4("TIT2", '\3' + std::string(1'000'000, 'a'))));
  EXPECT_EQ(long_title.substr(0, long_title.find('|')), std::string(997, 'a') + "...");
  EXPECT_EQ(V2(Id3v2(3, Frame3("TIT2", '\0' + std::string(2'000'000, 'a')))), "|||-1|");

  // A sparse file stands for a tag with a huge picture: nothing of it is read.
  const std::size_t huge = 200'000'000;
  const std::string path =
      temp.Write("huge.mp3", "ID3\3\0\0"s + BigEndian(huge + 10 + title.size(), 4, 7) + "APIC" +
                                 BigEndian(huge, 4) + "\0\0"s);
  ASSERT_EQ(truncate(path.c_str(), static_cast<off_t>(20 + huge)), 0);
  const int file = open(path.c_str(), O_WRONLY | O_APPEND);
  const std::string rest = title + sound;
  ASSERT_EQ(write(file, rest.data(), rest.size()), static_cast<ssize_t>(rest.size()));
  close(file);
  const auto reader = readers.MakeTagReaderSecondary();
  reader->Load(path);
  EXPECT_EQ(reader->Title(), "x");
  EXPECT_EQ(HeaderOf(path), heard);
}

}  // namespace
}  // namespace kv
