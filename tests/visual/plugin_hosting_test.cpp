// Which plug-ins there are, and who paints, where and when: cycling, the demo, the meter in the
// movie area, frames.
#include "support/temp_folder.h"
#include "visual/plugin_folders.h"
#include "visual/plugin_world.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(PluginFoldersTest, TakesTheLibrariesThatALineNamesTheUsersFirst) {
  const TempFolder temp;
  for (const char* name : {"user/plugins/b.so", "user/plugins/A.so", "user/plugins/unlisted.so",
                           "user/plugins/empty.so", "user/plugins/notes.txt", "bin/kestrelview",
                           "lib/kv/b.so", "lib/kv/c.so"}) {
    temp.Write(name, "");
  }
  temp.Write("user/plugins/plugins.ini",
             "[Plugins]\nB.SO=User.B\na.so=User.A\nempty.so=\nmissing.so=No.One\nnotes.txt=No\n"
             "[Other]\nunlisted.so=No\n");
  temp.Write("lib/kv/plugins.ini", "[plugins]\nb.so=Theirs.B\nc.so=Theirs.C\n");
  const std::vector<PluginLibrary> libraries = ListPluginLibraries(PluginFolders(
      temp.Path("user/"), temp.Path("bin/kestrelview"), "lib/kv", temp.Path("lib/nowhere")));
  std::string found;
  for (const PluginLibrary& library : libraries) found += library.File + "=" + library.ProgId + " ";
  EXPECT_EQ(found, "A.so=User.A b.so=User.B c.so=Theirs.C ");
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

class PluginHostingTest : public testing::Test, protected PluginWorld {};

TEST_F(PluginHostingTest, CyclesThroughDisplaysAndPluginsAndStartsOver) {
  Scan();
  const struct {
    const char* caption;
    int style, alive;
  } steps[] = {{"Plugin:Default (mode 2)", 1, 0},
               {"Plugin:Default (mode 3)", 2, 0},
               {"Plugin:One", 2, 1},
               {"Plugin:Two", 2, 1},
               {"Plugin:Default (mode 1)", 0, 0},
               {"Plugin:Default (mode 2)", 1, 0}};
  for (const auto& step : steps) {
    hosting.CyclePlugins();
    EXPECT_EQ(form.caption, step.caption);
    EXPECT_EQ(settings.PluginStyle, step.style);
    EXPECT_EQ(objects.alive, step.alive);
  }
  EXPECT_EQ(settings.PluginKey, "two.so");
  EXPECT_EQ(settings.PluginProgId, "B.Two");
}

TEST_F(PluginHostingTest, NoPluginLivesWhereNoMeterIsToBeSeen) {
  Scan();
  settings.ShowVuMeter = FromBool(false);
  hosting.SetExPlugIn(0);
  EXPECT_EQ(objects.alive, 0);
}

TEST_F(PluginHostingTest, StandsStillWithoutPlugins) {
  for (int step = 0; step < 5; ++step) hosting.CyclePlugins();
  EXPECT_EQ(meter.style, 2);
  EXPECT_FALSE(IsOn(settings.UseExternalPlugin));
  settings.UseExternalPlugin = FromBool(true);  // chosen once, and gone since
  hosting.CyclePlugins();
  EXPECT_EQ(meter.style, 0);
  hosting.SetExPlugIn(3);
  EXPECT_FALSE(IsOn(settings.UseExternalPlugin));
}

TEST_F(PluginHostingTest, DemoChangesEveryFifteenSecondsWhileTheMeterShows) {
  const auto style_after = [this](int seconds) {
    for (; seconds > 0; --seconds) {
      time.Advance(1000);
      hosting.DemoTick();
    }
    return meter.style;
  };
  EXPECT_EQ(style_after(40), 0);
  meter.visible = true;
  EXPECT_EQ(style_after(15), 0);
  EXPECT_EQ(style_after(1), 1);
}

TEST_F(PluginHostingTest, TheMeterRunsForSoundAlone) {
  const struct {
    const char* name;
    bool minimised, open, show, paused, running;
    bool runs;
  } cases[] = {
      {"plays", false, false, true, false, true, true},
      {"minimised", true, false, true, false, true, false},
      {"window open", false, true, true, false, true, false},
      {"not wanted", false, false, false, false, true, false},
      {"paused", false, false, true, true, true, false},
      {"stopped", false, false, true, false, false, false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    meter.running = true;
    form.minimised = row.minimised;
    state.VumeterOpen = row.open;
    settings.ShowVuMeter = FromBool(row.show);
    form.paused = row.paused;
    form.running = row.running;
    hosting.SetVumeterVisible();
    EXPECT_EQ(meter.running, row.runs);
  }
  settings.VumeterVisible = FromBool(true);  // the window comes back; hands off
  meter.running = true;
  hosting.SetVumeterVisible();
  EXPECT_TRUE(meter.running);
}

TEST_F(PluginHostingTest, APictureTakesThePluginAwayAndSoundBringsItBack) {
  Scan();
  hosting.SetExPlugIn(0);
  hosting.SetVumeterVisible();
  EXPECT_TRUE(meter.running && meter.visible);
  form.picture = true;
  hosting.SetVumeterVisible();
  EXPECT_FALSE(meter.running || meter.visible);
  EXPECT_EQ(objects.alive, 0);
  form.picture = false;
  meter.failure = "no sound here";
  hosting.SetVumeterVisible();
  EXPECT_EQ(objects.alive, 1);
  EXPECT_TRUE(meter.visible);
  // A film is opened inside the pump that goes with making the plug-in.
  catalogue.DestroyPlugin();
  meter.failure.clear();
  meter.visible = false;
  pump.Post([this] { form.picture = true; });
  hosting.SetVumeterVisible();
  EXPECT_FALSE(meter.running || meter.visible);
}

TEST_F(PluginHostingTest, NeverCoversAPicture) {
  // While its window is to come back nothing else would put it away again.
  settings.VumeterVisible = FromBool(true);
  form.picture = true;
  hosting.ShowVuMeter1(true);
  EXPECT_FALSE(meter.visible);
}

TEST_F(PluginHostingTest, FramesGoToThePluginWithTheLiveColours) {
  Scan();
  std::vector<std::uint8_t> samples(64, 128);
  std::int32_t count = 64;
  settings.Colors[kMeterForegroundSlot] = 0x123456;
  const auto cancelled = [&](bool on_view) {
    bool cancel = false;
    hosting.Frame(meter, on_view, samples, count, cancel);
    return cancel;
  };
  EXPECT_FALSE(cancelled(true));  // the meter's own display
  EXPECT_TRUE(cancelled(false));
  hosting.SetExPlugIn(0);
  EXPECT_TRUE(cancelled(false));
  EXPECT_EQ(CallsOf("A.One GetVuMeter"), 0);
  EXPECT_TRUE(cancelled(true));
  EXPECT_EQ(CallsOf("A.One GetVuMeter"), 1);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(settings.Colors[kMeterPeakSlot], 0x123456);
  catalogue.DestroyPlugin();
  EXPECT_TRUE(cancelled(true));  // nobody paints
}

TEST_F(PluginHostingTest, ConfiguresWhoSaysThatItCanNow) {
  Scan();
  hosting.SetExPlugIn(0);
  hosting.ConfigPlugin();
  EXPECT_EQ(CallsOf("A.One OpenConfigDialog"), 0);
  objects.plugins["A.One"].HasConfig = true;
  // Another plug-in comes while the dialog is open: the object lives until its call returns.
  objects.plugins["A.One"].in_dialog = [this] {
    hosting.SetExPlugIn(1);
    EXPECT_EQ(objects.alive, 2);
  };
  hosting.ConfigPlugin();
  EXPECT_EQ(CallsOf("A.One OpenConfigDialog"), 1);
  EXPECT_TRUE(form.cursor_shown);
  EXPECT_EQ(objects.alive, 1);
  hosting.ExtPluginMediaChanged();
  EXPECT_EQ(CallsOf("B.Two MediaChanged"), 1);
}

TEST_F(PluginHostingTest, AMenuPausesTheMeterInUse) {
  FakeMeter window;
  window.running = true;
  hosting.SetWindowMeter(&window);
  state.VumeterOpen = true;
  hosting.PrepareVUStop();
  EXPECT_FALSE(window.running);
  hosting.PrepareVUStart();
  EXPECT_TRUE(window.running);
  // The window closes behind an open menu.
  hosting.PrepareVUStop();
  hosting.SetWindowMeter(nullptr);
  state.VumeterOpen = false;
  hosting.PrepareVUStart();
  EXPECT_TRUE(meter.running);
}

}  // namespace
}  // namespace kv
