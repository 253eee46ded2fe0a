// Which libraries count, what the scan reads and when a plug-in is live.
#include "support/temp_folder.h"
#include "visual/plugin_folders.h"
#include "visual/plugin_world.h"

#include <gmock/gmock.h>

namespace kv {
namespace {

using testing::ElementsAre;

TEST(PluginFoldersTest, TakesTheLibrariesThatALineNamesTheUsersFirst) {
  const TempFolder temp;
  temp.Write("user/plugins/b.so", "");
  temp.Write("user/plugins/A.so", "");
  temp.Write("user/plugins/unlisted.so", "");
  temp.Write("user/plugins/empty.so", "");
  temp.Write("user/plugins/notes.txt", "");
  temp.Write("user/plugins/plugins.ini",
             "[Plugins]\nB.SO=User.B\na.so=User.A\nempty.so=\nmissing.so=No.One\nnotes.txt=No\n"
             "[Other]\nunlisted.so=No\n");
  temp.Write("bin/kestrelview", "");
  temp.Write("lib/kv/b.so", "");
  temp.Write("lib/kv/c.so", "");
  temp.Write("lib/kv/plugins.ini", "[plugins]\nb.so=Theirs.B\nc.so=Theirs.C\n");
  const std::vector<PluginLibrary> libraries = ListPluginLibraries(PluginFolders(
      temp.Path("user/"), temp.Path("bin/kestrelview"), "lib/kv", temp.Path("lib/nowhere")));
  std::vector<std::string> rows;
  for (const PluginLibrary& library : libraries)
    rows.push_back(library.File + "=" + library.ProgId);
  EXPECT_THAT(rows, ElementsAre("A.so=User.A", "b.so=User.B", "c.so=Theirs.C"));
}

TEST(PluginCatalogueTest, ReadsEachFreshObjectInOrderAndLeavesOutWhatCannotBeMade) {
  PluginWorld world;
  world.objects.plugins["Bad"].broken = true;
  world.objects.plugins["A.One"].HasConfig = true;
  // The same object under two files is two entries.
  world.catalogue.ScanPlugins(
      {{"/", "bad.so", "Bad"}, {"/", "one.so", "A.One"}, {"/", "again.so", "A.One"}});
  ASSERT_EQ(world.catalogue.PluginCount(), 2);
  const PluginEntry& entry = *world.catalogue.Find(0);
  EXPECT_EQ(entry.Name, "One");
  EXPECT_TRUE(entry.HasConfig);
  EXPECT_EQ(entry.Version, "");  // a member that fails
  EXPECT_EQ(world.catalogue.Find(1)->File, "again.so");
  EXPECT_EQ(world.catalogue.Find(2), nullptr);
  EXPECT_EQ(world.objects.alive, 0);
}

}  // namespace
}  // namespace kv
