// The settings' way in and out, through a real file and real slider models.
#include "shell/settings_life.h"

#include "shell/shell_test.h"
#include "state/settings_file.h"
#include "support/slider_world.h"

namespace kv {
namespace {

struct SettingsLifeTest : testing::Test, SliderWorld, SettingsHost {
  void ShowAbout() override { log.emplace_back("about"); }
  void SetMeterSampleRate(int hertz) override { log.push_back("rate " + std::to_string(hertz)); }
  void LoadColorInfo() override { log.push_back("colours " + settings.ColorScheme); }
  WindowState State() const override { return state; }
  WindowPlace Place() const override { return {15, 30, 4500, 3000}; }
  void SetBusyPointer(bool busy) override { log.emplace_back(busy ? "busy" : "ready"); }
  void UpdateMeterWindow() override { log.emplace_back("meter window"); }
  void UpdateMenuChecks() override { log.emplace_back("menu"); }
  void UpdateFileDisp(const std::string& text) override { log.push_back("title" + text); }
  void SetAutoHideMode() override { log.emplace_back("auto hide"); }
  void AdjustView() override { log.emplace_back("view"); }
  void ScaleMovie(bool ForcePanel) override { log.emplace_back(ForcePanel ? "panel" : "scale"); }
  void UpdateTrendChart() override { log.emplace_back("chart"); }
  void UpdateTraySettings() override { log.emplace_back("tray"); }
  void UpdateMainMeter() override { log.emplace_back("meter"); }
  void SetVumeterVisible() override { log.emplace_back("meter visible"); }
  void SetPanelVisible(bool visible) override { log.emplace_back(visible ? "panel" : "no panel"); }
  void Form_Resize() override { log.emplace_back("resize"); }

  void Write(const Settings& record) { WriteSettings(temp.Path("home/config.dat"), record); }
  Settings Stored() const {
    Settings record;
    EXPECT_TRUE(ReadSettings(temp.Path("home/config.dat"), record));
    return record;
  }

  TempFolder temp;
  ProgramFolder folder{{temp.Path("home"), "", "", "", temp.MakeFolder("installed")}};
  FakeShellServices shell;
  WindowState state = WindowState::kNormal;
  std::vector<std::string> log;
  SettingsLife life{*this, settings, models, folder, shell, pump};
};

TEST_F(SettingsLifeTest, BringsTheSlidersBackWhateverEachOfThemWrites) {
  Settings record;
  record.Volume = 70;
  record.PlayRate = 30;
  record.Balance = 4;
  record.AudioSampleRate = 11025;
  record.ColorScheme = "blue.dat";
  Write(record);
  life.LoadSettings();
  EXPECT_THAT((std::vector{slider2.Value(), slider3.Value(), slider4.Value()}),
              ElementsAre(70, 30, 4));
  EXPECT_THAT(log, ElementsAre("rate 11025", "colours blue.dat"));
}

TEST_F(SettingsLifeTest, GreetsAFirstRun) {
  Settings record;
  record.FirstRun = record.AutoLoadLast = FromBool(true);
  record.PlaylistIndex = 3;
  record.CurrentFile = "/old.mp3";
  Write(record);
  const std::string name = "installed/welcome_to_ostrand.wav", sound = temp.Path(name);
  for (const bool installed : {false, true}) {  // without its sound the box comes again next time
    if (installed) temp.Write(name, "RIFF");
    log.clear();
    life.LoadSettings();
    EXPECT_EQ(log.front(), "about");
    EXPECT_EQ(IsOn(settings.FirstRun), !installed);
    EXPECT_EQ(settings.CurrentFile, installed ? sound : "/old.mp3");
    EXPECT_EQ(settings.PlaylistIndex, installed ? 0 : 3);
  }
  ASSERT_EQ(shell.played.size(), 1U);
  EXPECT_EQ(shell.played[0].file, sound);
  EXPECT_TRUE(shell.played[0].wait);
}

TEST_F(SettingsLifeTest, ForgetsWhatWasPlayedUnlessItIsToComeBack) {
  const struct {
    bool auto_load_last, restart_playing, kept;
  } rows[] = {{false, false, false}, {true, false, true}, {false, true, true}};
  for (const auto& row : rows) {
    Settings record;
    record.PlaylistFile = "/m/list.m3u";
    record.CurrentFile = "/m/a.mp3";
    record.AutoLoadLast = FromBool(row.auto_load_last);
    record.RestartPlaying = FromBool(row.restart_playing);
    Write(record);
    life.LoadSettings();
    EXPECT_EQ(settings.PlaylistFile + settings.CurrentFile, row.kept ? "/m/list.m3u/m/a.mp3" : "");
  }
  life.SaveSettings("/m/a.mp3 -Clear");
  EXPECT_EQ(Stored().CurrentFile, "");
}

TEST_F(SettingsLifeTest, KeepsTheNormalRectangleOfEarlierRuns) {
  const struct {
    WindowState state;
    bool full_screen;
    int width;
  } rows[] = {{WindowState::kNormal, false, 4500},
              {WindowState::kNormal, true, 777},
              {WindowState::kMinimised, false, 777},
              {WindowState::kMaximised, false, 777}};
  life.LoadSettings();
  for (const auto& row : rows) {
    settings.WindowWidth = settings.WindowLeft = 777;
    settings.FullScreen = FromBool(row.full_screen);
    state = row.state;
    life.SaveSettings("");
    EXPECT_EQ(Stored().WindowWidth, row.width);
    EXPECT_EQ(Stored().WindowLeft == 777, row.width == 777);
    EXPECT_EQ(Stored().WindowTop, 30);
    EXPECT_EQ(Stored().WindowHeight, 3000);
    EXPECT_EQ(Stored().LastWindowState, static_cast<int>(row.state));
    EXPECT_EQ(IsOn(Stored().FullScreen), row.full_screen);
  }
}

TEST_F(SettingsLifeTest, NeverReplacesARecordThatWasNotRead) {
  Settings record;
  record.Volume = 50;
  Write(record);
  life.SaveSettings("-clear");
  EXPECT_TRUE(Stored() == record);
}

TEST_F(SettingsLifeTest, ChangedOptionsShowOrHideTheStripOfFullScreen) {
  for (const bool hide : {true, false}) {
    log.clear();
    settings.FullScreen = FromBool(true);
    settings.HideControlsInFullscreen = FromBool(hide);
    life.UpdateSettings();
    EXPECT_THAT(log, testing::Contains(hide ? "no panel" : "panel"));
  }
}

}  // namespace
}  // namespace kv
