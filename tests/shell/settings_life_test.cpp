// The settings' way in and out, through a real file and real slider models.
#include "shell/settings_life.h"

#include "state/settings_file.h"
#include "support/fake_pump.h"
#include "support/fake_shell_services.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SettingsLifeTest : public testing::Test, protected SettingsHost {
 protected:
  SettingsLifeTest() {
    slider1.SetMax(1000);
    slider2.SetMax(99);
    slider3.SetMax(40);
    slider4.SetMax(18);
  }

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
  FakePump pump;
  FakeShellServices shell;
  ScrollerSurface surface;
  ScrollerModel slider1{surface}, slider2{surface}, slider3{surface}, slider4{surface};
  Settings settings;
  WindowState state = WindowState::kNormal;
  std::vector<std::string> log;
  SettingsLife life{*this, settings, {slider1, slider2, slider3, slider4}, folder, shell, pump};
};

TEST_F(SettingsLifeTest, BringsTheSlidersBackWhateverEachOfThemWrites) {
  Settings record;
  record.Volume = 70;
  record.PlayRate = 30;
  record.Balance = 4;
  record.AudioSampleRate = 11025;
  record.ColorScheme = "blue.dat";
  Write(record);
  slider2.Events().scroll = [this](double&, std::int16_t&, std::int16_t) {
    settings.PlayRate = settings.Balance = 1;
  };
  life.LoadSettings();
  EXPECT_EQ(slider2.Value(), 70);
  EXPECT_EQ(slider3.Value(), 30);
  EXPECT_EQ(slider4.Value(), 4);
  EXPECT_THAT(log, ElementsAre("rate 11025", "colours blue.dat"));
}

TEST_F(SettingsLifeTest, GreetsAFirstRun) {
  Settings record;
  record.FirstRun = record.AutoLoadLast = FromBool(true);
  record.PlaylistIndex = 3;
  record.CurrentFile = "/old.mp3";
  Write(record);
  life.LoadSettings();  // no sound is there: the box comes, at the next start as well
  EXPECT_EQ(log.front(), "about");
  EXPECT_TRUE(IsOn(settings.FirstRun));
  EXPECT_EQ(settings.CurrentFile, "/old.mp3");
  EXPECT_THAT(shell.played, IsEmpty());

  const std::string sound = temp.Write("installed/welcome_to_ostrand.wav", "RIFF");
  log.clear();
  life.LoadSettings();
  EXPECT_EQ(log.front(), "about");
  EXPECT_FALSE(IsOn(settings.FirstRun));
  EXPECT_EQ(settings.CurrentFile, sound);
  EXPECT_EQ(settings.PlaylistIndex, 0);
  ASSERT_EQ(shell.played.size(), 1U);
  EXPECT_EQ(shell.played[0].file, sound);
  EXPECT_TRUE(shell.played[0].wait);
  EXPECT_FALSE(shell.played[0].loop || shell.played[0].no_stop || shell.played[0].no_default);
}

TEST_F(SettingsLifeTest, ForgetsTheLastMediumUnlessItIsToComeBack) {
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
    EXPECT_EQ(settings.PlaylistFile, row.kept ? "/m/list.m3u" : "");
    EXPECT_EQ(settings.CurrentFile, row.kept ? "/m/a.mp3" : "");
  }
}

TEST_F(SettingsLifeTest, SavesTheRecordWithPlaceAndPosition) {
  Settings record;
  record.AutoLoadLast = FromBool(true);
  record.ColorScheme = "blue.dat";
  record.CurrentFile = "/m/\xFF.mp3";
  record.RecentFiles = {"/m/\xFF.mp3", "/m/b.mp3"};
  record.PlaylistColumnWidth[11] = 12.5;
  record.reserved78[3] = 9;
  Write(record);
  life.LoadSettings();
  slider1.SetValue(12.5);
  life.SaveSettings("");
  record.LastPosition = 12.5;
  record.WindowLeft = 15;
  record.WindowTop = 30;
  record.WindowWidth = 4500;
  record.WindowHeight = 3000;
  EXPECT_TRUE(Stored() == record);
  EXPECT_EQ(temp.Entries(), 2);
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
    EXPECT_EQ(Stored().LastWindowState, static_cast<int>(row.state));
    EXPECT_EQ(IsOn(Stored().FullScreen), row.full_screen);
  }
}

TEST_F(SettingsLifeTest, ForgetsWithTheClearSwitchWhatWasPlayed) {
  Settings record;
  record.AutoLoadLast = FromBool(true);
  record.CurrentFile = "/m/a.mp3";
  Write(record);
  life.LoadSettings();
  life.SaveSettings("/m/a.mp3 -Clear");
  EXPECT_EQ(Stored().CurrentFile, "");
  EXPECT_TRUE(IsOn(Stored().FirstRun));
  EXPECT_TRUE(IsOn(Stored().AutoLoadLast));
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
