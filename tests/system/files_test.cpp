// Listing, reading, moving and saving files.
#include "system/files.h"

#include "support/temp_folder.h"
#include "system/full_disk.h"
#include "system/paths.h"
#include "system/save_file.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

using testing::UnorderedElementsAre;

unsigned ModeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

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

  EXPECT_THAT(ListFilesInFolder(folder.Path(), "*.mp3;*.FLAC"),
              UnorderedElementsAre("a.MP3", "ac", "b.flac", "lac", "link.mp3", "\xE9t\xE9.mp3"));
  EXPECT_EQ(ListFilesInFolder(folder.Path(), "*.*").size(), 8U);
  EXPECT_THAT(ListSubFolders(folder.Path()),
              UnorderedElementsAre("album.mp3", "empty", "link_to_folder"));
  EXPECT_TRUE(ListSubFolders(folder.Path("missing")).empty());
}

TEST(Files, ReadTextFile) {
  const TempFolder folder;
  for (const auto& [bytes, text] : {std::pair{"a\r\nb\r\n", "a\r\nb"},
                                    {"a\r\n\r\n", "a\r\n"},
                                    {"a\n", "a\n"},
                                    {"\r\n", ""},
                                    {"\xEF\xBB\xBF#x\r\n", "#x"}}) {
    EXPECT_EQ(ReadTextFile(folder.Write("t", bytes)), text);
  }
  EXPECT_EQ(ReadTextFile(folder.Write("t", "12345"), 5), "12345");
  EXPECT_EQ(ReadTextFile(folder.Path("t"), 4), "");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);  // without a writer
  for (const std::string& none :
       {folder.Path("missing"), folder.Path(), folder.Path("pipe"), std::string("/dev/zero")}) {
    EXPECT_EQ(ReadTextFile(none), "") << none;
  }
  EXPECT_NE(ReadTextFile("/proc/self/status"), "");  // the kernel says it has no bytes
}

TEST(Files, TemporaryNames) {
  const TempFolder folder;
  std::string first, second;
  ASSERT_TRUE(MakeTempFileName(folder.Path(), "kv_p", 0, first));
  ASSERT_TRUE(MakeTempFileName(folder.Path(), "kv_p", 0, second));
  EXPECT_NE(first, second);
  EXPECT_EQ(ModeOf(first), 0600U);
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

TEST(SaveFile, ModesAndFolders) {
  const TempFolder folder;
  const std::string file = folder.Path("new/sub/config.dat");
  ASSERT_TRUE(SaveFileChecked(file, std::string_view("a\0b", 3)));
  EXPECT_EQ(folder.Read("new/sub/config.dat"), std::string("a\0b", 3));
  EXPECT_EQ(ModeOf(file), 0600U);
  EXPECT_EQ(ModeOf(folder.Path("new")), 0700U);

  chmod(file.c_str(), 0644);
  ASSERT_TRUE(SaveFileChecked(file, ""));
  EXPECT_EQ(folder.Read("new/sub/config.dat"), "");
  EXPECT_EQ(ModeOf(file), 0644U);
}

TEST(SaveFile, LinksSurvive) {
  const TempFolder folder;
  folder.Write("real/list.m3u", "old");
  std::filesystem::create_symlink("real/list.m3u", folder.Path("link"));
  std::filesystem::create_symlink("link", folder.Path("link_to_link"));
  std::filesystem::create_symlink("real/new.m3u", folder.Path("dangling"));
  std::filesystem::create_symlink("circle", folder.Path("circle"));
  ASSERT_TRUE(SaveFileChecked(folder.Path("link_to_link"), "new"));
  ASSERT_TRUE(SaveFileChecked(folder.Path("dangling"), "fresh"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link_to_link")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("dangling")));
  EXPECT_EQ(folder.Read("real/list.m3u"), "new");
  EXPECT_EQ(folder.Read("real/new.m3u"), "fresh");
  EXPECT_FALSE(SaveFileChecked(folder.Path("circle"), "x"));
  EXPECT_EQ(folder.Entries(), 5);
}

TEST(SaveFile, AnotherUsersLinkInASharedFolderIsNotFollowed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can put another user's link somewhere";
  const TempFolder folder;
  folder.Write("mine", "old");
  folder.MakeFolder("shared");
  constexpr uid_t kAnother = 12345;
  for (const char* const name : {"shared/own", "shared/trap", "trap"}) {
    std::filesystem::create_symlink(folder.Path("mine"), folder.Path(name));
    const uid_t owner = std::string_view(name).ends_with("trap") ? kAnother : geteuid();
    ASSERT_EQ(lchown(folder.Path(name).c_str(), owner, owner), 0);
  }
  ASSERT_EQ(chmod(folder.Path("shared").c_str(), 01777), 0);
  EXPECT_FALSE(SaveFileChecked(folder.Path("shared/trap"), "new"));
  EXPECT_EQ(folder.Read("mine"), "old");
  EXPECT_TRUE(SaveFileChecked(folder.Path("shared/own"), "new"));
  EXPECT_TRUE(SaveFileChecked(folder.Path("trap"), "newer")) << "nobody else can put it here";
  EXPECT_EQ(folder.Read("mine"), "newer");
}

TEST(SaveFile, RefusesWhatIsNoPlainFile) {
  const TempFolder folder;
  folder.MakeFolder("folder");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  folder.Write("file", "");
  for (const std::string& path :
       {std::string(), folder.Path("folder"), folder.Path("folder/"), folder.Path("pipe"),
        folder.Path("file/below"), folder.Path("a") + std::string("\0b", 2)}) {
    std::string error;
    EXPECT_FALSE(SaveFileChecked(path, "x", &error)) << path;
    EXPECT_NE(error, "") << path;
  }
  EXPECT_EQ(folder.Entries(), 3);
}

TEST(SaveFile, FullDiskLeavesTheOldFileWhole) {
  const TempFolder folder;
  const std::string old_content(1000, 'o');
  const std::string file = folder.Write("config.dat", old_content);
  std::string error;
  {
    const FullDisk disk(32768);
    EXPECT_FALSE(SaveFileChecked(file, std::string(200000, 'n'), &error));
  }
  EXPECT_NE(error, "");
  EXPECT_EQ(folder.Read("config.dat"), old_content);
  EXPECT_EQ(folder.Entries(), 1);
}

}  // namespace
}  // namespace kv
