// Colour schemes on the disk, and as the user makes, renames, deletes and edits them.
#include "state/color_scheme.h"

#include "state/color_editor.h"
#include "state/color_file.h"
#include "state/color_slots.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"

#include <cerrno>
#include <deque>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kv {
namespace {

std::string SchemeOf(std::int32_t color) {
  const TempFolder temp;
  ColorTable table{};
  table.fill(color);
  WriteColorFile(temp.Path("x"), table);
  return temp.Read("x");
}

TEST(ColorFile, LiesOnTheDiskAsItsSlots) {
  const TempFolder temp;
  ColorTable colors{};
  colors[0] = 0x00302010;
  ASSERT_TRUE(WriteColorFile(temp.Path("a.dat"), colors));
  EXPECT_EQ(temp.Read("a.dat"), std::string("\x10\x20\x30", 3) + std::string(129, '\0'));
  EXPECT_FALSE(ReadColorFile(temp.MakeFolder("folder.dat"), colors));
  EXPECT_EQ(colors[0], 0x00302010);
  EXPECT_FALSE(WriteColorFile(temp.Path("folder.dat"), colors));
}

// A player with the schemes "default" and "Blue" of its own, and none of the user's.
struct Schemes : testing::Test, ColorEditorHost {
  Schemes() {
    temp_.Write("share/colorscemes/default.dat", SchemeOf(1));
    temp_.Write("share/colorscemes/Blue.dat", SchemeOf(2));
    temp_.Write("share/colorscemes/readme.txt", "no scheme");
    schemes_.LoadColorInfo();
  }

  std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& /*text*/) override {
    boxes_ += prompt + title + "|";
    if (inputs_.empty()) return {};
    std::string answer = inputs_.front();
    inputs_.pop_front();
    return answer;
  }
  void RefreshColors() override { ++refreshes_; }
  void SchemesChanged() override {}

  std::string Own(const std::string& name) const {
    return temp_.Read("home/colorscemes/" + name + ".dat");
  }

  TempFolder temp_;
  ProgramFolder folder_{{temp_.Path("home"), "", "", "", temp_.Path("share")}};
  Settings settings_;
  ColorSchemes schemes_{settings_, folder_};
  ScriptedDialogs dialogs_;
  ColorEditor editor_{*this, schemes_, settings_.Colors, dialogs_};
  std::deque<std::string> inputs_;
  std::string boxes_;
  int refreshes_ = 0;
};

TEST_F(Schemes, AreFoundInAllFoldersTheUsersFirst) {
  temp_.Write("home/colorscemes/Blue.dat", SchemeOf(7));
  temp_.Write("home/colorscemes/a.b.dat", SchemeOf(8));
  temp_.Write("home/colorscemes/\xFF.dat", SchemeOf(9));
  temp_.Write("home/x.dat", SchemeOf(99));
  EXPECT_EQ(schemes_.Names(), (std::vector<std::string>{"default", "a.b", "Blue", "\xFF"}));
  const std::pair<const char*, std::int32_t> colors[] = {{"", 1},          {"Blue.dat", 7},
                                                         {"a.b.dat", 8},   {"\xFF.dat", 9},
                                                         {"gone.dat", 55}, {"../x.dat", 55}};
  for (const auto& [setting, color] : colors) {
    settings_.ColorScheme = setting;
    settings_.Colors.fill(55);
    schemes_.LoadColorInfo();
    EXPECT_EQ(settings_.Colors[32], color) << setting;
  }
  EXPECT_EQ(schemes_.SaveColorInfo().code, EINVAL);  // of the last
  EXPECT_EQ(temp_.Read("home/x.dat"), SchemeOf(99));
}

TEST_F(Schemes, AChangeIsSeenAndWrittenAtOnce) {
  editor_.SelectScheme("Blue");
  dialogs_.WillPickColor({0x112233, {}});
  editor_.ChangeColors({ColorSlot::kMenuText});
  dialogs_.WillPickColor({-1, {}});
  editor_.ChangeColors({ColorSlot::kMenuText, ColorSlot::kMenuBack});
  editor_.ChangeColors({});
  EXPECT_EQ(refreshes_, 2);  // one for the scheme
  ColorTable table{};
  table.fill(2);
  table[14] = 0x112233;
  EXPECT_EQ(settings_.Colors, table);
  WriteColorFile(temp_.Path("expected"), table);
  EXPECT_EQ(Own("Blue"), temp_.Read("expected"));
  EXPECT_EQ(temp_.Read("share/colorscemes/Blue.dat"), SchemeOf(2));

  // What cannot be written is still shown, and told.
  temp_.MakeFolder("home/colorscemes/Folder.dat");
  settings_.ColorScheme = "Folder.dat";
  editor_.SetColors({ColorSlot::kMenuText}, 5);
  EXPECT_EQ(settings_.Colors[14], 5);
  EXPECT_TRUE(dialogs_.LastText().ends_with("\nCode:21")) << dialogs_.LastText();
}

TEST_F(Schemes, NewRenameAndDelete) {
  editor_.SelectScheme("Blue");
  inputs_ = {"Mine", "My.own"};
  editor_.NewScheme();
  EXPECT_EQ(Own("Mine"), SchemeOf(2));
  editor_.RenameScheme();
  EXPECT_EQ(Own("Mine") + Own("My.own"), SchemeOf(2));
  EXPECT_EQ(settings_.ColorScheme, "My.own.dat");
  EXPECT_EQ(boxes_, "Name:New color sceme:|Name:Rename|");

  dialogs_.WillAnswer(BoxAnswer::kNo);
  editor_.DeleteScheme();
  EXPECT_EQ(Own("My.own"), SchemeOf(2));
  dialogs_.WillAnswer(BoxAnswer::kYes);
  editor_.DeleteScheme();
  EXPECT_EQ(dialogs_.LastText(), "Delete \"My.own\" ?");
  EXPECT_EQ(settings_.ColorScheme, "default.dat");
  EXPECT_EQ(settings_.Colors[0], 1);

  // A changed one of the program's comes back as it was.
  editor_.SelectScheme("Blue");
  editor_.SetColors({ColorSlot::kMenuText}, 5);
  dialogs_.WillAnswer(BoxAnswer::kYes);
  editor_.DeleteScheme();
  EXPECT_EQ(settings_.Colors[14], 2);
}

TEST_F(Schemes, Refusals) {
  const std::string forbidden =
      "ERROR! The sceme name cannot contain these characters:\n\\/:*?\"<>|";
  const std::string own = "This scheme belongs to Kestrelview and can't be ";
  const std::string read_only = "\nCode:" + std::to_string(EROFS);
  const auto rename = &ColorEditor::RenameScheme, make = &ColorEditor::NewScheme,
             remove = &ColorEditor::DeleteScheme;
  const struct {
    const char* scheme;
    void (ColorEditor::*action)();
    std::deque<std::string> inputs;
    std::string text;
  } cases[] = {
      {"default", rename, {}, "You can't rename the Default sceme!"},
      {"DEFAULT", remove, {}, "You can't delete the Default sceme!"},
      {"gone", remove, {}, "Error, file don't exist!"},
      {"gone", make, {"x"}, "Error, file don't exist!"},
      {"Blue", make, {"a/b"}, forbidden},
      {"Blue", rename, {"a|b"}, forbidden},
      {"Blue", make, {"Blue"}, "ERROR! A sceme with that name already exists!"},
      {"Blue", rename, {"x"}, own + "renamed. New makes a copy." + read_only},
      {"Blue", make, {std::string(300, 'x')}, "File name too long\nCode:36"},
  };
  for (const auto& each : cases) {
    schemes_.SetCurrent(each.scheme);
    inputs_ = each.inputs;
    (editor_.*each.action)();
    EXPECT_EQ(dialogs_.LastText(), each.text);
    EXPECT_EQ(schemes_.Current(), each.scheme);
  }
  inputs_.clear();
  editor_.NewScheme();  // cancelled
  EXPECT_EQ(dialogs_.Boxes().size(), std::size(cases));
  schemes_.SetCurrent("Blue");
  dialogs_.WillAnswer(BoxAnswer::kYes);
  editor_.DeleteScheme();
  EXPECT_TRUE(dialogs_.LastText().starts_with(own + "deleted.\nCode:")) << dialogs_.LastText();
  EXPECT_EQ(schemes_.Names(), (std::vector<std::string>{"default", "Blue"}));
}

}  // namespace
}  // namespace kv
