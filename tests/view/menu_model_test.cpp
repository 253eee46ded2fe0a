// What the menu holds and what is checked in it.
#include "view/menu_model.h"

#include "support/fake_text_platform.h"
#include "view/key_table.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

class MenuModelTest : public testing::Test, protected MenuPlugins, protected MenuListener {
 protected:
  MenuModelTest() { menu.SetListener(this); }

  int Count() const override { return static_cast<int>(plugins.size()); }
  std::string Name(int index) const override {
    return plugins[static_cast<std::size_t>(index)].first;
  }
  std::string Key(int index) const override {
    return plugins[static_cast<std::size_t>(index)].second;
  }
  void MenuRebuilt() override { told.emplace_back("rebuilt"); }
  void MenuItemChanged(int id) override { told.push_back(menu.Find(id)->key); }

  // "parent key caption [picture] accelerator", "x" in front of what is checked, "h" of what is
  // hidden, "---" for a separator.
  std::vector<std::string> Tree() const {
    std::vector<std::string> lines;
    for (const MenuItem& item : menu.Items()) {
      const MenuItem* const parent = menu.Find(item.parent);
      std::string line = parent != nullptr ? parent->key + " " : "";
      if (item.type == CommandType::kSeparator) {
        lines.push_back(line + "---" + item.key);
        continue;
      }
      if (item.type == CommandType::kCheck) line += item.checked ? "[x] " : "[ ] ";
      if (!item.visible) line += "h ";
      line += item.key + " '" + item.caption + "'";
      if (!item.picture.empty()) line += " " + item.picture.substr(item.picture.find('/') + 1);
      const std::string keys = AcceleratorText(item.shift, item.key_code);
      lines.push_back(keys.empty() ? line : line + " " + keys);
    }
    return lines;
  }

  std::vector<std::string> Under(const std::string& parent) const {
    std::vector<std::string> keys;
    for (const MenuItem& item : menu.Items()) {
      if (item.parent == menu.IdOfKey(parent)) keys.push_back(item.key);
    }
    return keys;
  }

  std::string Checked() const {
    std::string keys;
    for (const MenuItem& item : menu.Items()) {
      if (item.checked) keys += item.key + " ";
    }
    return keys;
  }

  std::vector<std::pair<std::string, std::string>> plugins;  // name, key
  std::vector<std::string> told;
  Settings settings;
  FakeTextPlatform text;
  MenuModel menu{settings, *this, text,
                 [](std::string_view caption) { return 5 * static_cast<int>(caption.size()); }};
};

TEST_F(MenuModelTest, HoldsTheWholeTree) {
  settings.KeepAspect = FromBool(true);
  settings.ShowVuMeter = FromBool(true);
  settings.RecentFiles = {"/m/a & b.mp3", "", "HTTP://u:pa:s@s@h/x.mp3"};
  plugins = {{"Scope", "scope.so"}, {"Flames", "flames.so"}};
  menu.BuildMenu();
  const std::vector<std::string> expected = {
      "M 'MENU' menu.ico",
      "M mOpen 'Open...' open.ico Ctrl+O",
      "M mOpenURL 'Open URL...' openURL.ico Ctrl+U",
      "M mRecent 'Recent files...' openURL.ico",
      "mRecent mRecent_f00 '/m/a & b.mp3' recent_audio.ico",
      "mRecent mRecent_f02 'HTTP://h/x.mp3' recent_url.ico",
      "mRecent ---mRecent_Spl",
      "mRecent mRecent_Clear 'Clear recent menu' remove.ico",
      "M ---",
      "M mSaveAs 'Save As...' copyfiles.ico Ctrl+S",
      "M ---",
      "M mSaveRFAs 'Save Resume File As...' ResumeFile.ico",
      "M mSaveRFEnd 'Set Resume File End Pos...' ResumeFile_end.ico",
      "M mSaveRFEndClear 'Clear Resume File End Pos...' clear_ResumeFile_end.ico",
      "M mReleaseRF 'Release Resume Data' Release_ResumeData.ico",
      "M ---",
      "M mPlay 'Play' play.ico Enter",
      "M mPause 'Pause' pause.ico Space",
      "M mStop 'Stop' stop.ico Backspace",
      "M ---",
      "M mPrevious 'Previous' previous.ico Page Up",
      "M mNext 'Next' next.ico Page Down",
      "M ---",
      "M mJumpToFirst 'Jump to first' to_start.ico Home",
      "M mJumpToLast 'Jump to last' to_last.ico End",
      "M ---",
      "M mOptions 'Options' options.ico Ctrl+K",
      "M ---",
      "M mVideo 'Video' video.ico",
      "mVideo [x] mKeepAspect 'Keep aspect ratio' A",
      "mVideo [ ] mFitToWindow 'Fit to window' F",
      "mVideo ---",
      "mVideo mZoom100 'Zoom to original size' Z",
      "mVideo ---",
      "mVideo mSubtitles 'Subtitles'",
      "mSubtitles ---",
      "mSubtitles mSubtitles_Load 'Load subtitles...'",
      "mVideo mSoundTracks 'Sound tracks'",
      "M ---",
      "M [ ] mFullScreen 'FullScreen' Alt+Enter",
      "M ---",
      "M mPlaylist 'Open Playlist' playlist.ico P",
      "M ---",
      "M mPlugins 'Visualizations'",
      "mPlugins [x] mPlug_-2 'Show plugin in movie area'",
      "mPlugins ---",
      "mPlugins [x] mPlug_-1 'Build-in'",
      "mPlugins [ ] mPlug_0 'Scope'",
      "mPlugins [ ] mPlug_1 'Flames'",
      "M mPluginManager 'Open Plugin Manager...'",
      "M ---",
      "M mAbout 'About...' about.ico",
      "M ---",
      "M mHelp 'Help' help.ico F1",
      "M ---",
      "M mExit 'Exit' exit.ico Esc",
      "M h mShowScope 'Level meter window' S",
  };
  EXPECT_EQ(Tree(), expected);
}

TEST_F(MenuModelTest, ShowsThePresentRecentFiles) {
  menu.BuildMenu();
  EXPECT_EQ(Under("mRecent"), (std::vector<std::string>{"mRecent_Spl", "mRecent_Clear"}));
  for (std::size_t i = 0; i < settings.RecentFiles.size(); ++i) {
    settings.RecentFiles[i] = "/films/a folder with a long name/number " + std::to_string(i);
  }
  menu.BuildMenu();
  const std::vector<std::string> keys = Under("mRecent");
  ASSERT_EQ(keys.size(), 12U);
  EXPECT_EQ(keys.front(), "mRecent_f00");
  EXPECT_EQ(keys[9], "mRecent_f09");
  const std::string caption = menu.Find(menu.IdOfKey("mRecent_f09"))->caption;
  EXPECT_LE(caption.size(), 40U);
  EXPECT_TRUE(caption.ends_with("number 9")) << caption;
}

TEST_F(MenuModelTest, KeepsIdsAndForgetsStatesWhenBuiltAnew) {
  menu.BuildMenu();
  const int open = menu.IdOfKey("mOpen");
  const int exit = menu.IdOfKey("mExit");
  menu.SetEnabled(open, false);
  settings.RecentFiles[3] = "/m/a.ogg";
  menu.BuildMenu();
  EXPECT_EQ(menu.IdOfKey("mOpen"), open);
  EXPECT_EQ(menu.IdOfKey("mExit"), exit);
  EXPECT_TRUE(menu.Enabled(open));
  EXPECT_EQ(menu.IdOfKey("mopen"), MenuModel::kNoItem);
  EXPECT_EQ(menu.IdOfKey(""), MenuModel::kNoItem);
  std::set<int> ids;
  for (const MenuItem& item : menu.Items()) ids.insert(item.id);
  EXPECT_EQ(ids.size(), menu.Items().size());
}

TEST_F(MenuModelTest, ChecksTheVisualisationInUse) {
  plugins = {{"A", "one.so"}, {"B", "\xC3\x89t\xC3\xA9.so"}, {"C", "\xC3\x89t\xC3\xA9.so"}};
  menu.BuildMenu();
  const struct {
    bool external;
    const char* key;
    const char* checked;
  } rows[] = {{false, "one.so", "mPlug_-1 "},
              {true, "ONE.so", "mPlug_0 "},
              {true, "\xC3\xA9T\xC3\xA9.SO", "mPlug_1 "},
              {true, "gone.so", "mPlug_-1 "},
              {true, "", "mPlug_-1 "}};
  for (const auto& row : rows) {
    settings.UseExternalPlugin = FromBool(row.external);
    settings.PluginKey = row.key;
    menu.UpdateMenuChecks();
    EXPECT_EQ(Checked(), row.checked) << row.key;
  }
  settings.FullScreen = settings.FitToWindow = FromBool(true);
  menu.UpdateMenuChecks();
  EXPECT_EQ(Checked(), "mFitToWindow mFullScreen mPlug_-1 ");
}

TEST_F(MenuModelTest, TellsTheListenerOfChangesAlone) {
  menu.BuildMenu();
  EXPECT_EQ(told, std::vector<std::string>{"rebuilt"});
  settings.KeepAspect = FromBool(true);
  menu.UpdateMenuChecks();
  menu.UpdateMenuChecks();
  menu.SetCaption(menu.IdOfKey("mPlay"), "Go");
  menu.SetVisible(menu.IdOfKey("mPlay"), true);
  menu.SetEnabled(MenuModel::kNoItem, false);
  EXPECT_EQ(told, (std::vector<std::string>{"rebuilt", "mKeepAspect", "mPlay"}));
}

TEST(GetIconTest, KnowsAddressesAndSound) {
  const std::pair<const char*, int> rows[] = {{"https://a/b.mp3", 2},
                                              {"http://a/b.mp3", 3},
                                              {"FTP://a", 3},
                                              {"mms://a/b", 1},
                                              {"/m/a.MIDI", 2},
                                              {"/m/a.mp3/b", 1},
                                              {"C:\\m\\a.Wav", 2},
                                              {"/m/a.mpg", 1},
                                              {"mp3", 1},
                                              {"", 1}};
  for (const auto& [path, icon] : rows) EXPECT_EQ(MenuModel::GetIcon(path), icon) << path;
}

// What the menu promises as accelerator, the keyboard keeps.
TEST(CommandTableTest, EveryAcceleratorIsAKey) {
  for (const Command& command : kCommands) {
    if (command.key_code == 0) continue;
    const KeyRow* const row = FindKey(command.key_code, command.shift);
    ASSERT_NE(row, nullptr) << command.key;
    if (!row->item.empty()) {
      EXPECT_EQ(row->item, command.key);
    }
  }
  for (const KeyRow& row : KeyTable()) {
    EXPECT_EQ(FindKey(row.key_code, row.shift), &row) << "two rows for one key";
  }
}

}  // namespace
}  // namespace kv
