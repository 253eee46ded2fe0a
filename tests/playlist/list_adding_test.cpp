// What enters the list from files, folders and drops, and that a walk can be watched and ended.
#include "playlist/list_adding.h"

#include "playlist/playlist_test.h"
#include "support/list_host.h"

#include <filesystem>
#include <sys/stat.h>

namespace kv {
namespace {

struct ListAddingTest : testing::Test, ListHost {
  ListAddingTest() { session.SupportedExtensions = "*.mp3;*.ogg;*.m3u"; }

  void FillUp() {
    while (list.Count() < kPlaylistLimit) list.add("x");
  }
};

TEST_F(ListAddingTest, WalksSubfoldersFirst) {
  temp.Write("a.mp3", "");
  temp.Write("note.txt", "");
  temp.Write("list.m3u", "");
  temp.Write("sub/deep/\xFF\xFE.ogg", "");
  temp.Write("sub/b.mp3", "");
  temp.MakeFolder("empty");
  ASSERT_EQ(mkfifo(temp.Path("pipe.mp3").c_str(), 0600), 0);
  std::filesystem::create_directory_symlink("..", temp.Path("sub/up"));
  std::filesystem::create_directory_symlink(".", temp.Path("sub/deep/self"));
  adding.AddFolderToList(temp.Path("."));
  const std::string top = temp.Path("./");
  EXPECT_THAT(Items(),
              ElementsAre(top + "sub/deep/\xFF\xFE.ogg", top + "sub/b.mp3", top + "a.mp3"));
  EXPECT_TRUE(session.PlaylistDirty);
  EXPECT_GE(pump.Pumps(), 4);
  adding.AddFolderToList(temp.Path("gone"));
  adding.AddFolderToList(temp.Path("pipe.mp3"));
  EXPECT_EQ(list.Count(), 3);
}

TEST_F(ListAddingTest, EndsWhereItIsTold) {
  for (const char* name : {"1.mp3", "2.mp3", "sub/3.mp3", "sub/4.mp3"}) temp.Write(name, "");
  session.PlaylistWindowLoaded = session.ScanWindowOpen = true;
  on_progress = [this] { session.ScanAbort = list.Count() == 2; };
  adding.AddFolderToList(temp.Path());
  EXPECT_EQ(list.Count(), 2);
  adding.AddFolderToList(temp.Path());
  EXPECT_EQ(list.Count(), 2);

  session.ScanAbort = false;
  on_progress = [this] { session.Unloading = true; };
  adding.AddFilesOrFolders({temp.Path(), temp.Path("1.mp3")});
  EXPECT_EQ(list.Count(), 3);
  EXPECT_FALSE(busy_pointer);

  // Nothing to add, no window to watch, yet the end is heard at once.
  session.Unloading = session.PlaylistWindowLoaded = session.ScanWindowOpen = false;
  const int pumps = pump.Pumps();
  pump.Post([this] { session.Unloading = true; });
  temp.MakeFolder("empty/a/b");
  adding.AddFolderToList(temp.Path("empty"));
  EXPECT_EQ(pump.Pumps(), pumps + 1);
}

TEST_F(ListAddingTest, TheLimitIsTold) {
  temp.Write("1.mp3", "");
  temp.Write("sub/2.mp3", "");
  FillUp();
  adding.AddFolderToList(temp.Path());
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
  EXPECT_FALSE(session.PlaylistDirty);

  adding.AddFilesOrFolders({temp.Path("1.mp3")});
  EXPECT_EQ(dialogs.LastText(),
            "Can't have more than 9999 files in a playlist. Save and make several playlist files!");
  EXPECT_THAT(told, IsEmpty());
  list.Remove(1);
  adding.AddFilesOrFolders({temp.Path("1.mp3")});  // exactly the last place
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
  list.Remove(1);
  adding.AddFilesOrFolders({temp.Path()});
  EXPECT_EQ(list.Count(), kPlaylistLimit);
  EXPECT_EQ(list.Item(kPlaylistLimit), temp.Path("sub/2.mp3"));
  EXPECT_EQ(dialogs.Boxes().size(), 2U);

  // The list fills up while a file waits for its turn.
  list.Remove(1);
  session.ScanWindowOpen = true;
  pump.Post([this] { FillUp(); });
  adding.AddFolderToList(temp.Path("1.mp3"));
  EXPECT_EQ(list.Count(), kPlaylistLimit);
  EXPECT_EQ(dialogs.LastText(),
            "Can't add more than 9999 files to the playlist. Save and make several playlists!");
}

TEST_F(ListAddingTest, Drops) {
  const std::string song = temp.Write("1.mp3", "");
  const std::string other = temp.Write("x.m3u", "");
  temp.Write("folder.m3u/2.mp3", "");
  adding.AddFilesOrFolders({other});
  EXPECT_THAT(told, ElementsAre("open " + other, "disp"));
  EXPECT_EQ(list.Count(), 0);
  adding.AddFilesOrFolders({song, other, "/gone.mp3"});
  EXPECT_THAT(Items(), ElementsAre(song));
  adding.AddFilesOrFolders({temp.Path("folder.m3u")});
  EXPECT_THAT(Items(), ElementsAre(song, temp.Path("folder.m3u/2.mp3")));
}

}  // namespace
}  // namespace kv
