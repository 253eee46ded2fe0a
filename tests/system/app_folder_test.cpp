#include "system/app_folder.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kv {
namespace {

TEST(ProgramFolder, IsChosenInOrder) {
  const TempFolder root;
  AppFolderSources sources;
  sources.user_home = root.Path("me");
  sources.executable_path = root.Write("opt/bin/kestrelview", "");
  EXPECT_EQ(ProgramFolder(sources).AppFolder(), root.Path("me/.local/share/kestrelview/"));
  sources.xdg_data_home = "relative";
  EXPECT_EQ(ProgramFolder(sources).AppFolder(), root.Path("me/.local/share/kestrelview/"));
  sources.xdg_data_home = root.Path("data");
  EXPECT_EQ(ProgramFolder(sources).AppFolder(), root.Path("data/kestrelview/"));
  root.Write("opt/bin/config.dat", "");
  EXPECT_EQ(ProgramFolder(sources).AppFolder(), root.Path("opt/bin/"));
  sources.kestrelview_home = root.Path("own");
  EXPECT_EQ(ProgramFolder(sources).AppFolder(), root.Path("own/"));
  struct stat status {};
  ASSERT_EQ(stat(root.Path("own").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);

  sources.kestrelview_home = root.Write("file", "") + "/below";  // cannot be made: no error
  EXPECT_EQ(ProgramFolder(sources).AppFolder(), root.Path("file/below/"));
}

TEST(ProgramFolder, DataFilesAreLookedForInOrder) {
  const TempFolder root;
  AppFolderSources sources;
  sources.kestrelview_home = root.Path("home");
  sources.executable_path = root.Write("usr/bin/kestrelview", "");
  sources.data_folder = root.MakeFolder("source");
  const ProgramFolder folder(sources);
  EXPECT_EQ(folder.DataFile("a.ico"), root.Path("home/a.ico"));
  for (const char* better : {"source/a.ico", "usr/share/kestrelview/a.ico", "home/a.ico"}) {
    const std::string file = root.Write(better, "");
    EXPECT_EQ(folder.DataFile("a.ico"), file);
  }
}

}  // namespace
}  // namespace kv
