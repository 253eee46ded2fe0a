// The separate window: how it opens and ends, and when it comes back. And the manager's rules.
#include "visual/meter_window.h"

#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "visual/plugin_manager.h"
#include "visual/plugin_world.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

struct FakeMeterForm : MeterWindowForm {
  void SetCaption(const std::string& text) override { caption = text; }
  void Move(const MeterWindowPlace& to) override { place = to; }
  MeterWindowPlace Place() const override { return place; }
  void Unload() override { ++unloads; }
  void PopUpMenu() override {}
  void OpenPluginManager() override {}
  void ConfigMainPlugin() override {}
  void ShowPointer() override {}
  void EnableUpdateVuRunning() override {}
  MeterWindowPlace place;
  std::string caption;
  int unloads = 0;
};

class MeterWindowTest : public testing::Test, protected PluginWorld {
 protected:
  FakeMeter own;
  FakeMeterForm window;
  ScriptedDialogs dialogs;
  MeterWindow rules{{window, own, hosting, settings, state, dialogs, time, meter}};
};

TEST_F(MeterWindowTest, OpensAsTheSettingsSay) {
  Scan();
  settings.UseExternalPlugin = FromBool(true);
  settings.PluginProgId = "A.One";
  settings.PluginName = "One";
  settings.ShowVuMeter = FromBool(false);  // the window wants it all the same
  settings.VumeterLeft = 150;
  settings.VumeterWidth = settings.VumeterHeight = 3000;
  objects.plugins["A.One"].NoAutoRedraw = true;
  rules.Form_Load();
  EXPECT_EQ(objects.alive, 1);
  EXPECT_EQ(window.place.left, 10);
  EXPECT_TRUE(own.running && !own.auto_redraw);
  EXPECT_EQ(window.caption, "One - Kestrelview");
  window.place.left = 20;
  rules.Form_QueryUnload(MeterUnloadMode::kUser);
  EXPECT_EQ(settings.VumeterLeft, 300);
  EXPECT_EQ(objects.alive, 0);
}

TEST_F(MeterWindowTest, GoesByItselfWhenNothingCanBeHeard) {
  own.failure = "no sound";
  rules.Form_Load();
  EXPECT_EQ(dialogs.LastText(), "Unable to initialize Scope!");
  EXPECT_EQ(window.unloads, 0);
  time.Advance(1000);
  EXPECT_EQ(window.unloads, 1);
}

TEST_F(MeterWindowTest, ComesBackOnlyWhenTheProgramClosedIt) {
  const struct {
    const char* by;
    MeterUnloadMode mode;
    bool comes_back;
    bool takes_over;  // the meter of the main window
  } rows[] = {
      {"user", MeterUnloadMode::kUser, false, true},
      {"program", MeterUnloadMode::kProgram, true, false},
      {"session", MeterUnloadMode::kSession, true, false},
      {"Escape", MeterUnloadMode::kProgram, false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.by);
    meter.running = false;
    MeterWindow other({window, own, hosting, settings, state, dialogs, time, meter});
    other.Form_Load();
    if (row.by == std::string("Escape")) other.Form_KeyDown(27, 0);
    other.Form_QueryUnload(row.mode);
    EXPECT_FALSE(own.running);
    EXPECT_EQ(IsOn(settings.VumeterVisible), row.comes_back);
    EXPECT_EQ(meter.running, row.takes_over);
  }
  EXPECT_EQ(window.unloads, 1);
}

TEST_F(MeterWindowTest, TheMouseReachesThePluginThatIsLive) {
  Scan();
  rules.Form_Load();
  settings.UseExternalPlugin = FromBool(true);
  rules.VuMeter1_MouseDown({2, 0, 1.0F, 1.0F});  // none is live
  catalogue.CreatePlugin("A.One");
  rules.VuMeter1_Click();
  EXPECT_EQ(own.style, 0);
  rules.VuMeter1_DblClick();
  EXPECT_EQ(CallsOf("A.One DoubleClick"), 1);
}

class PluginManagerTest : public testing::Test, protected PluginWorld {
 protected:
  FakeTextPlatform text;
  PluginManager manager{catalogue, settings, state, text};
};

TEST_F(PluginManagerTest, FindsTheActiveRow) {
  Scan();
  settings.UseExternalPlugin = FromBool(true);
  settings.PluginKey = "TWO.so";
  manager.Form_Load();
  EXPECT_EQ(manager.ActiveRow(), 2U);
  EXPECT_EQ(manager.FactsOf(2).values[0], "Undefined");
}

TEST_F(PluginManagerTest, UsesAPluginOnceAndKeepsTheOldName) {
  Scan();
  hosting.SetExPlugIn(0);
  manager.Form_Load();
  const auto live = catalogue.CurrentPlugin();
  manager.UsePlugin(1);
  EXPECT_EQ(catalogue.CurrentPlugin(), live);
  manager.UsePlugin(2);
  EXPECT_EQ(settings.PluginKey, "two.so");
  EXPECT_EQ(settings.PluginName, "One");
  manager.UsePlugin(0);
  EXPECT_EQ(catalogue.CurrentPlugin(), nullptr);
  manager.UsePlugin(2);  // the same as before, but nothing was active
  EXPECT_NE(catalogue.CurrentPlugin(), nullptr);
}

TEST_F(PluginManagerTest, ConfiguresTheLiveObjectOrOneOfItsOwn) {
  Scan();
  hosting.SetExPlugIn(0);
  auto owned = std::make_unique<PluginManager>(catalogue, settings, state, text);
  owned->Form_Load();
  objects.plugins["A.One"].in_dialog = [this] { EXPECT_EQ(objects.alive, 1); };
  owned->ConfigPlugin(1);
  objects.plugins["B.Two"].in_dialog = [&] {
    EXPECT_EQ(objects.alive, 2);
    owned->Form_QueryUnload();
    owned.reset();
  };
  owned->ConfigPlugin(2);
  EXPECT_EQ(CallsOf("A.One OpenConfigDialog") + CallsOf("B.Two OpenConfigDialog"), 2);
  EXPECT_EQ(CallsOf("B.Two closedialog"), 1);
  EXPECT_FALSE(state.PluginManagerOpen);
  EXPECT_EQ(objects.alive, 1);
}

}  // namespace
}  // namespace kv
