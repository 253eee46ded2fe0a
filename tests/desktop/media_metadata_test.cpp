#include "desktop/media_metadata.h"

#include "desktop/cover_art.h"
#include "desktop/embedded_cover.h"
#include "support/temp_folder.h"
#include "system/file_address.h"

#include <chrono>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace kv {
namespace {

using namespace std::string_literals;

// Of the kinds that the cases below meet.
std::string Text(const MediaMetadata& data, const std::string& name) {
  const auto field = data.find(name);
  if (field == data.end()) return "-";
  if (const auto* text = std::get_if<std::string>(&field->second)) return *text;
  if (const auto* list = std::get_if<std::vector<std::string>>(&field->second)) return list->at(0);
  const auto* number = std::get_if<std::int32_t>(&field->second);
  return number != nullptr ? std::to_string(*number) : "";
}

TEST(MediaMetadata, FallsBackAndTellsNoPassword) {
  using Texts = std::map<std::string, std::string>;
  const struct {
    std::string target;
    Texts tags, fields;
  } cases[] = {
      {"/m/\xE9 1.mp3",
       {{"track", "x"}, {"disc", "-4"}, {"date", "soon"}, {"title", " \t"}},
       {{"xesam:url", "file:///m/%E9%201.mp3"},
        {"xesam:title", "\uFFFD 1"},
        {"xesam:trackNumber", "-"},
        {"xesam:discNumber", "-"},
        {"xesam:contentCreated", "-"}}},
      {"http://me:pw@host/live?x=/y",
       {{"icy-title", "Now\n2"}, {"track", "3/12"}, {"comment", "see http://me:pw@host/x"}},
       {{"xesam:url", "http://host/live?x=/y"},
        {"xesam:title", "Now 2"},
        {"xesam:trackNumber", "3"},
        {"xesam:comment", "see http://host/x"}}},
  };
  for (const auto& c : cases) {
    PlayerState state;
    state.target = c.target;
    state.tags = &c.tags;
    const MediaMetadata data = BuildMetadata(state, "/t", "file:///a");
    for (const auto& [name, value] : c.fields) EXPECT_EQ(Text(data, name), value) << c.target;
  }
  EXPECT_EQ(BuildMetadata({}, std::string(kNoTrack), "x").size(), 1U);
}

std::string Big(std::size_t number, int bytes, unsigned bits = 8) {
  std::string result;
  for (int i = bytes; i-- > 0;) {
    result += static_cast<char>((number >> (static_cast<unsigned>(i) * bits)) & ((1U << bits) - 1));
  }
  return result;
}

std::string Id3(char version, char flags, const std::string& body) {
  return "ID3"s + version + '\0' + flags + Big(body.size(), 4, 7) + body;
}

const std::string kJpeg = "\xFF\xD8\xFF\xE0 a picture of some size";
const std::string kPng = "\x89PNG\r\n\x1A\n a picture";

TEST(EmbeddedCover, IsTheFrontWhateverTheVersionOfTheTag) {
  const std::string apic = "\0image/jpeg\0\3front\0"s + kJpeg;
  const std::string other = "\0image/png\0\0icon\0"s + kPng;
  const std::string wide = "\1image/jpeg\0\3\xFF\xFE"s + "f\0\0\0"s + kJpeg;
  const auto frame = [](const std::string& id, const std::string& body, unsigned bits) {
    return id + Big(body.size(), 4, bits) + "\0\0"s + body;
  };
  const TempFolder folder;
  for (const std::string& tag :
       {Id3(2, 0, "PIC" + Big(apic.size() - 8, 3) + "\0JPG\3front\0"s + kJpeg),
        Id3(3, 0, frame("TIT2", "\0song"s, 8) + frame("APIC", other, 8) + frame("APIC", apic, 8)),
        Id3(4, 0, frame("APIC", wide, 7))}) {
    const CoverPicture cover = FindEmbeddedCover(folder.Write("a", tag + "sound behind it"));
    EXPECT_TRUE(cover.bytes.starts_with(kJpeg)) << tag;
    EXPECT_EQ(cover.extension, ".jpg");
  }
  EXPECT_EQ(PictureExtension("<svg onload=x>"), "");
}

TEST(CoverArt, IsWrittenForTheUserAloneAndGoesWithTheMedium) {
  const TempFolder music;
  const TempFolder runtime;
  const std::string apic = "\0image/jpeg\0\3\0"s + kJpeg;
  const std::string with = music.Write(
      "with/a.mp3", Id3(3, 0, "APIC" + Big(apic.size(), 4) + "\0\0"s + apic) + "sound behind it");
  const std::string beside = music.Write("beside/a.mp3", "sound behind nothing");
  music.Write("beside/Folder.PNG", kPng);
  runtime.Write("kestrelview-cover-999999999-1.jpg", "of a player that was killed");
  const auto wait = [](CoverArt& art, const std::string& path) {
    std::string address;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (address.empty() && std::chrono::steady_clock::now() < limit) {
      address = art.Of(path);
      std::this_thread::yield();  // it is looked for on a thread
    }
    return PathOfFileAddress(address);
  };
  {
    CoverArt art(runtime.Path());
    const std::string file = wait(art, with);
    struct stat info {};
    ASSERT_EQ(stat(file.c_str(), &info), 0) << file;
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
    EXPECT_EQ(runtime.Entries(), 1);
    EXPECT_EQ(wait(art, beside), music.Path("beside/Folder.PNG"));
    EXPECT_EQ(runtime.Entries(), 0);
    EXPECT_NE(wait(art, with), file);  // clients remember a picture by its address
  }
  EXPECT_EQ(runtime.Entries(), 0);
}

}  // namespace
}  // namespace kv
