#include "system/files.h"

#include "support/temp_folder.h"
#include "system/paths.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

std::vector<std::string> Sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

using Names = std::vector<std::string>;

TEST(Files, ListsByTheLastThreeCharacters) {
  const TempFolder folder;
  for (const char* name : {"a.MP3", "b.flac", "lac", "c.ogg", "ac", "\xE9t\xE9.mp3", "d.mp3 "}) {
    folder.Write(name, "");
  }
  folder.MakeFolder("album.mp3");
  folder.MakeFolder("empty");
  ASSERT_EQ(mkfifo(folder.Path("pipe.mp3").c_str(), 0600), 0);
  std::filesystem::create_symlink(folder.Path("a.MP3"), folder.Path("link.mp3"));
  std::filesystem::create_symlink("empty", folder.Path("link_to_folder"));

  EXPECT_EQ(Sorted(ListFilesInFolder(folder.Path(), "*.mp3;*.FLAC")),
            (Names{"a.MP3", "ac", "b.flac", "lac", "link.mp3", "\xE9t\xE9.mp3"}));
  EXPECT_EQ(ListFilesInFolder(folder.Path(), "*.*").size(), 8U);
  EXPECT_EQ(Sorted(ListSubFolders(folder.Path())), (Names{"album.mp3", "empty", "link_to_folder"}));
  EXPECT_TRUE(ListSubFolders(folder.Path("missing")).empty());
}

TEST(Files, ReadTextFile) {
  const TempFolder folder;
  struct Case {
    const char* bytes;
    const char* text;
  };
  const Case cases[] = {
      {"a\r\nb\r\n", "a\r\nb"},     {"a\r\n\r\n", "a\r\n"}, {"a\n", "a\n"}, {"\r\n", ""}, {"", ""},
      {"\xEF\xBB\xBF#x\r\n", "#x"},
  };
  for (const Case& c : cases) EXPECT_EQ(ReadTextFile(folder.Write("t", c.bytes)), c.text);

  EXPECT_EQ(ReadTextFile(folder.Write("t", "12345"), 5), "12345");
  EXPECT_EQ(ReadTextFile(folder.Path("t"), 4), "");
  EXPECT_EQ(ReadTextFile(folder.Path("missing")), "");
  EXPECT_EQ(ReadTextFile(folder.Path()), "");
  EXPECT_EQ(ReadTextFile("/dev/zero"), "");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadTextFile(folder.Path("pipe")), "");  // and does not wait for a writer
  EXPECT_NE(ReadTextFile("/proc/self/status"), "");  // the kernel says it has no bytes
}

TEST(Files, TemporaryNames) {
  const TempFolder folder;
  std::string first;
  std::string second;
  ASSERT_TRUE(MakeTempFileName(folder.Path(), "kv_p", 0, first));
  ASSERT_TRUE(MakeTempFileName(folder.Path(), "kv_p", 0, second));
  EXPECT_NE(first, second);
  struct stat status {};
  ASSERT_EQ(stat(first.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);

  std::string named = "untouched";
  EXPECT_FALSE(MakeTempFileName(folder.Path("missing"), "a", 0, named));
  EXPECT_FALSE(MakeTempFileName(folder.Path(), "../", 0, named));
  EXPECT_EQ(named, "untouched");
}

TEST(Files, MovingNeverReplaces) {
  const TempFolder folder;
  const std::string a = folder.Write("a", "A");
  const std::string b = folder.Write("b", "B");
  EXPECT_FALSE(MoveFileApi(a, b));
  EXPECT_EQ(folder.Read("a") + folder.Read("b"), "AB");
  EXPECT_FALSE(MoveFileApi(folder.Path("missing"), folder.Path("c")));
  folder.MakeFolder("sub");
  EXPECT_TRUE(MoveFileApi(b, folder.Path("sub/b")));
  EXPECT_EQ(folder.Read("sub/b"), "B");
}

TEST(Files, MovesToAnotherFileSystemWhole) {
  const TempFolder here;
  const std::string there = "/dev/shm/kv_move_" + std::to_string(getpid());
  if (DriveRootOfPath(here.Path()) == DriveRootOfPath(there)) GTEST_SKIP() << "one file system";
  const std::string content(3 * 1024 * 1024 + 17, 'x');
  const std::string file = here.Write("big", content);
  ASSERT_TRUE(MoveFileApi(file, there));
  EXPECT_FALSE(FileExists(file));
  EXPECT_EQ(FileSizeBytes(there), static_cast<double>(content.size()));
  here.Write("other", "keep");
  EXPECT_FALSE(MoveFileApi(there, here.Path("other")));
  EXPECT_EQ(here.Read("other"), "keep");
  EXPECT_EQ(here.Entries(), 1);
  EXPECT_TRUE(MoveFileApi(there, file));
  EXPECT_EQ(here.Read("big"), content);
}

}  // namespace
}  // namespace kv
