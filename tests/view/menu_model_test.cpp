// What the menu holds and what is checked in it.
#include "view/menu_model.h"

#include "support/fake_text_platform.h"
#include "view/key_table.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

class MenuModelTest : public testing::Test, protected MenuPlugins {
 protected:
  int Count() const override { return static_cast<int>(plugins.size()); }
  std::string Name(int index) const override {
    return plugins[static_cast<std::size_t>(index)].first;
  }
  std::string Key(int index) const override {
    return plugins[static_cast<std::size_t>(index)].second;
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
  Settings settings;
  FakeTextPlatform text;
  MenuModel menu{settings, *this, text,
                 [](std::string_view caption) { return 5 * static_cast<int>(caption.size()); }};
};

TEST_F(MenuModelTest, ShowsThePresentRecentFiles) {
  menu.BuildMenu();
  EXPECT_EQ(Under("mRecent"), (std::vector<std::string>{"mRecent_Spl", "mRecent_Clear"}));
  for (std::size_t i = 0; i < settings.RecentFiles.size(); ++i) {
    settings.RecentFiles[i] = "/films/a folder with a long name/number " + std::to_string(i);
  }
  settings.RecentFiles[1] = "HTTP://u:pa:s@s@h/x.mp3";
  const int open = menu.IdOfKey("mOpen");
  menu.BuildMenu();
  EXPECT_EQ(menu.IdOfKey("mOpen"), open);
  const std::vector<std::string> keys = Under("mRecent");
  ASSERT_EQ(keys.size(), 12U);
  EXPECT_EQ(keys.front(), "mRecent_f00");
  EXPECT_EQ(keys[9], "mRecent_f09");
  const std::string caption = menu.Find(menu.IdOfKey("mRecent_f09"))->caption;
  EXPECT_LE(caption.size(), 40U);
  EXPECT_TRUE(caption.ends_with("number 9")) << caption;
  EXPECT_EQ(menu.Find(menu.IdOfKey("mRecent_f01"))->caption, "HTTP://h/x.mp3");
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
