#include "system/paths.h"

#include "support/temp_folder.h"
#include "system/utf8.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

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

TEST(Paths, OnlyPlainFilesExistAsFiles) {
  const TempFolder folder;
  const std::string file = folder.Write("a\xFF.mp3", "x");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(FileExists(file));
  for (const std::string& path :
       {folder.Path(), folder.Path("pipe"), file + std::string("\0.txt", 5)}) {
    EXPECT_FALSE(FileExists(path)) << path;
  }
  EXPECT_TRUE(FolderExists(folder.Path()));
  EXPECT_FALSE(FolderExists(file));
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
  struct Case {
    std::string bytes;
    std::size_t size;
    char32_t code;
    bool valid;
  };
  const Case cases[] = {
      {"a", 1, 'a', true},
      {"\xE2\x82\xAC", 3, 0x20AC, true},
      {"\xF0\x9F\x8E\xB5", 4, 0x1F3B5, true},
      {"\xF4\x8F\xBF\xBF", 4, 0x10FFFF, true},
      {"\xC0\x80", 1, 0xC0, false},          // longer than needed
      {"\xED\xA0\x80", 1, 0xED, false},      // surrogate
      {"\xF4\x90\x80\x80", 1, 0xF4, false},  // beyond the last code point
      {"\x80", 1, 0x80, false},
      {"\xE2\x82", 1, 0xE2, false},  // cut
      {"\xFF", 1, 0xFF, false},
  };
  for (const Case& c : cases) {
    const Utf8Char got = DecodeUtf8(c.bytes, 0);
    EXPECT_EQ(got.code, c.code);
    EXPECT_EQ(got.size, c.size);
    EXPECT_EQ(got.valid, c.valid);
    if (c.valid) {
      std::string again;
      AppendUtf8(again, got.code);
      EXPECT_EQ(again, c.bytes);
    }
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
