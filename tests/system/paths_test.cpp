// What the name of a medium tells, and whether it is there.
#include "system/paths.h"

#include "support/temp_folder.h"
#include "system/name_tests.h"
#include "system/utf8.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

TEST(Paths, PartsOfAPath) {
  struct Case {
    const char* path;
    const char* name;
    const char* folder;
    const char* extension;  // without dot
    const char* extension_with_dot;
  };
  const Case cases[] = {
      // Backslash rules.
      {"C:\\media\\film.avi", "film.avi", "C:\\media\\", "avi", ".avi"},
      {"C:\\media\\", "C:\\media\\", "C:\\media\\", "", ""},
      {"\\\\host\\share/x.mp3", "share/x.mp3", "\\\\host\\", "mp3", ".mp3"},
      {"track", "track", "track", "track", "track."},
      {"", "", "", "", "."},
      {"music/a.mp3", "a.mp3", "music/", "mp3", ".mp3"},
      {"http://host/dir/list.m3u", "list.m3u", "http://host/dir/", "m3u", ".m3u"},
      {"http://host.org/live", "live", "http://host.org/", "org/live", ".org/live"},
      // Native paths: a backslash is a letter like any other.
      {"/music/a.mp3", "a.mp3", "/music/", "mp3", ".mp3"},
      {"/music/AC\\DC.live", "AC\\DC.live", "/music/", "live", ".live"},
      {"/music/odd\\", "odd\\", "/music/", "", ""},
      {"/a.b/track", "track", "/a.b/", "", ""},
      {"/song", "song", "/", "", ""},
      {"/m/.hidden", ".hidden", "/m/", "hidden", ".hidden"},
      {"/m/\xFF\xE9.mp3", "\xFF\xE9.mp3", "/m/", "mp3", ".mp3"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(FileNameOfPath(c.path), c.name);
    EXPECT_EQ(FolderOfPath(c.path), c.folder);
    EXPECT_EQ(GetFileExtension(c.path, false), c.extension);
    EXPECT_EQ(GetFileExtension(c.path, true), c.extension_with_dot);
  }
}

TEST(NameTests, WhatCanBePlayed) {
  constexpr const char* kSupported = "*.mp3;*.WAV;*.m3u";
  struct Case {
    const char* path;
    const char* supported;
    bool playable;
  };
  for (const Case& c : {Case{"/m/noise.wav", kSupported, true},
                        Case{"/m/song.mp", kSupported, true},  // a part of ".mp3"
                        Case{"/m/song.ogg", kSupported, false},
                        Case{"/m/README", kSupported, true},  // no extension: nothing to look for
                        Case{"README", kSupported, false},    // a bare name is its own extension
                        Case{"mms://host/live", "", true}, Case{"HTTPS://host/live", "", true},
                        Case{"xhttp://host/a.ogg", kSupported, false}}) {
    EXPECT_EQ(IsPlayableName(c.path, c.supported), c.playable) << c.path;
  }
}

TEST(NameTests, KindsAndSchemes) {
  EXPECT_TRUE(IsUrl("HTTPS://h/a"));
  EXPECT_FALSE(IsUrl("\\\\host\\a") || IsUrl("http:/h"));
  EXPECT_TRUE(IsAsfFile("/a.ASX") && !IsAsfFile("/a.asxx"));
  EXPECT_TRUE(IsM3UFile("C:\\LIST.M3U") && !IsM3UFile("/list.m3u8"));
}

TEST(Paths, OnlyPlainFilesExistAsFiles) {
  const TempFolder folder;
  const std::string file = folder.Write("a\xFF.mp3", "x");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(FileExists(file));
  EXPECT_FALSE(FileExists(folder.Path()) || FileExists(folder.Path("pipe")));
  EXPECT_FALSE(FileExists(file + std::string("\0.txt", 5)));
  EXPECT_TRUE(FolderExists(folder.Path()) && !FolderExists(file));
}

TEST(Paths, RootIsTheMountPoint) {
  EXPECT_EQ(DriveRootOfPath("C:\\media\\film.avi"), "C:\\");
  EXPECT_EQ(DriveRootOfPath("film.avi"), "");
  EXPECT_EQ(DriveRootOfPath("/proc/no/such/thing.mp3"), "/proc/");
  const TempFolder folder;
  std::filesystem::create_symlink("/proc", folder.Path("elsewhere"));
  EXPECT_EQ(DriveRootOfPath(folder.Path("elsewhere/self")), "/proc/");
}

// Ten pixels for each character, as a screen font might.
int TenPixels(std::string_view text) {
  int width = 0;
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) width += 10;
  return width;
}

TEST(Paths, CompactPathKeepsTheNameAndFits) {
  struct Case {
    const char* path;
    int pixels;
    const char* compact;
  };
  const Case cases[] = {
      {"/music/album/song.mp3", 210, "/music/album/song.mp3"},
      {"/music/album/song.mp3", 209, "/music/a.../song.mp3"},
      {"/music/album/song.mp3", 119, ".../song..."},
      {"/music/album/song.mp3", 70, ".../..."},
      {"/music/album/song.mp3", 69, "..."},
      {"/song.mp3", 60, "/so..."},
      {"C:\\path1\\path2\\sample.txt", 200, "C:\\pat...\\sample.txt"},
      {"http://host/one/two.mp3", 180, "http://.../two.mp3"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(CompactPathForWidth(c.path, TenPixels, c.pixels), c.compact) << c.path;
  }
  EXPECT_EQ(CompactPathForWidth("/m\u00FCsik/\u65E5.ogg", TenPixels, 100), "/.../\u65E5.ogg");
}

TEST(Utf8, DecodesOnlyWhatIsWellFormed) {
  for (const auto& [bytes, code] : {std::pair<std::string, char32_t>{"a", 'a'},
                                    {"\xE2\x82\xAC", 0x20AC},
                                    {"\xF0\x9F\x8E\xB5", 0x1F3B5},
                                    {"\xF4\x8F\xBF\xBF", 0x10FFFF}}) {
    const Utf8Char got = DecodeUtf8(bytes, 0);
    EXPECT_TRUE(got.valid) << bytes;
    EXPECT_EQ(got.code, code);
    EXPECT_EQ(got.size, bytes.size());
    std::string again;
    AppendUtf8(again, got.code);
    EXPECT_EQ(again, bytes);
  }
  // Longer than needed, a surrogate, beyond the last code point, without a head, cut, no code.
  for (const std::string bytes :
       {"\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80", "\xE2\x82", "\xFF"}) {
    const Utf8Char got = DecodeUtf8(bytes, 0);
    EXPECT_FALSE(got.valid) << bytes;
    EXPECT_EQ(got.code, static_cast<unsigned char>(bytes[0]));
    EXPECT_EQ(got.size, 1U);
  }
  const std::string mixed = "a\xC3\xA9\xE2\x82\xAC\x82";
  EXPECT_EQ(Utf8Prefix(mixed, 2), "a");
  EXPECT_EQ(Utf8Prefix(mixed, 5), "a\xC3\xA9");
  EXPECT_EQ(Utf8Prefix(mixed, 99), mixed);
  EXPECT_EQ(LastCharacters(mixed, 3), "\xC3\xA9\xE2\x82\xAC\x82");
  EXPECT_EQ(LastCharacters("ab", 3), "ab");
}

}  // namespace
}  // namespace kv
