// File types on the desktop's own list of programs.
#include "state/file_types.h"

#include "state/desktop_entry.h"
#include "state/mime_apps_text.h"
#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace kv {
namespace {

TEST(MimeAppsText, TakingAndGivingBackLeavesEveryByte) {
  const std::string head = "[Default Applications]";
  const std::pair<std::string, std::string> cases[] = {
      // before; taken
      {head + "\nvideo/mp4 = a.desktop;b.desktop; \n",
       head + "\nvideo/mp4 = k.desktop;a.desktop;b.desktop; \n"},
      // no line, and other groups around
      {"# top\n[Added Associations]\nvideo/mp4=a.desktop;\n\n" + head + "\nx/y=z\n\n[Q]\n",
       "# top\n[Added Associations]\nvideo/mp4=a.desktop;\n\n" + head +
           "\nx/y=z\nvideo/mp4=k.desktop\n\n[Q]\n"},
      {head + "\n#video/mp4=a\nvideo/mp4x=b\n",
       head + "\n#video/mp4=a\nvideo/mp4x=b\nvideo/mp4=k.desktop\n"},
      {head + "\r\nx/y=z\r\n", head + "\r\nx/y=z\r\nvideo/mp4=k.desktop\r\n"},
      // the last of several lines counts
      {head + "\nvideo/mp4=a\n[X]\n" + head + "\nvideo/mp4=b",
       head + "\nvideo/mp4=a\n[X]\n" + head + "\nvideo/mp4=k.desktop;b"},
      // and an earlier one stays out of force
      {head + "\nvideo/mp4=a\nvideo/mp4=\n", head + "\nvideo/mp4=a\nvideo/mp4=k.desktop\n"},
  };
  for (const auto& [before, taken] : cases) {
    std::string text = before;
    PutProgramFirst(text, "video/mp4", "k.desktop");
    EXPECT_EQ(text, taken);
    EXPECT_EQ(FirstProgram(DefaultPrograms(text, "video/mp4").value_or("")), "k.desktop");
    EXPECT_TRUE(RemoveFirstProgram(text, "video/mp4", "k.desktop"));
    EXPECT_EQ(text, before);
    EXPECT_FALSE(RemoveFirstProgram(text, "video/mp4", "k.desktop"));
  }
}

TEST(DesktopEntry, NamesTheProgramWhereItLies) {
  EXPECT_EQ(QuotedForExec("/50% $x/`\"\\"), R"("/50%% \\$x/\\`\\"\\\\")");
  const std::string entry = DesktopEntryFor("/opt/a b/k", "/opt/i.svg");
  EXPECT_NE(entry.find("\nExec=\"/opt/a b/k\" %f\n"), entry.npos);
  EXPECT_NE(entry.find("\nTryExec=/opt/a b/k\n"), entry.npos);
  EXPECT_TRUE(IsOwnDesktopEntry(entry));
}

class FakeMimeTypes : public MimeTypes {
 public:
  std::vector<std::string> TypesOf(const std::string& extension) const override {
    return types.count(extension) != 0 ? types.at(extension) : std::vector<std::string>();
  }
  std::string Comment(const std::string& type) const override { return "About " + type; }
  void Rebuild(const std::string& /*mime_folder*/) override { ++rebuilds; }

  std::map<std::string, std::vector<std::string>> types = {
      {"mp4", {"video/mp4"}},
      {"m4v", {"video/mp4"}},
      {"ts", {"text/vnd.trolltech.linguist", "video/mp2t"}},
      {"ogg", {"audio/ogg", "audio/x-vorbis+ogg", "video/ogg"}},
      {"ogv", {"video/ogg"}},
      {"bin", {"application/octet-stream"}},
  };
  int rebuilds = 0;
};

struct FileTypesTest : testing::Test {
  std::vector<FileTypeLine> Lines() const { return types_.Lines(kPatterns).lines; }

  // "&OK" with just the lines selected that have these first types.
  void Select(const std::vector<std::string>& wanted) {
    const std::vector<FileTypeLine> before = Lines();
    std::vector<FileTypeLine> after = before;
    for (FileTypeLine& line : after) {
      line.selected = std::find(wanted.begin(), wanted.end(), line.types.front()) != wanted.end();
    }
    types_.UpdateFileTypes(before, after);
  }
  std::string List() const { return temp_.Read("config/mimeapps.list"); }
  std::string Entry() const { return temp_.Read("share/applications/kestrelview.desktop"); }

  static constexpr const char* kPatterns = "*.mp4;*.ts;*.m4v;*.ogg;*.OGV;*.tak;*.bin;*.mp4;*.kvr";
  TempFolder temp_;
  FakeMimeTypes mime_;
  FileTypes types_{mime_,
                   {temp_.Path("config/"),
                    temp_.Path("share/"),
                    {temp_.Path("system/")},
                    temp_.Path("bin/kestrelview"),
                    ""}};
};

TEST_F(FileTypesTest, ExtensionsOfOneTypeShareALine) {
  temp_.Write(
      "config/mimeapps.list",
      "[Default Applications]\nvideo/mp4=kestrelview.desktop;x\nvideo/ogg=x;kestrelview.desktop");
  std::string shown;
  const FileTypeList list = types_.Lines(kPatterns);
  for (const FileTypeLine& line : list.lines) {
    for (const std::string& type : line.types) shown += type + ' ';
    for (const std::string& extension : line.extensions) shown += '.' + extension;
    shown += line.selected ? " on\n" : "\n";
  }
  EXPECT_EQ(shown,
            "video/mp4 .mp4.m4v on\n"
            "video/mp2t .ts\n"
            "audio/ogg audio/x-vorbis+ogg .ogg\n"
            "video/ogg .ogv\n"
            "application/x-kestrelview-resume .kvr\n");
  EXPECT_EQ(list.unknown, (std::vector<std::string>{"tak", "bin"}));
}

TEST_F(FileTypesTest, TheOldOwnerComesBackAndANewOneStands) {
  const std::string old =
      "# kept\n[Default Applications]\nvideo/mp4=vlc.desktop\nvideo/mp2t=a.desktop;b.desktop;\n"
      "image/png=gimp.desktop\n\n[Removed Associations]\nvideo/mp4=c.desktop;\n";
  temp_.Write("config/mimeapps.list", old);
  Select({"video/mp4", "video/mp2t", "audio/ogg"});
  EXPECT_EQ(List(),
            "# kept\n[Default Applications]\nvideo/mp4=kestrelview.desktop;vlc.desktop\n"
            "video/mp2t=kestrelview.desktop;a.desktop;b.desktop;\nimage/png=gimp.desktop\n"
            "audio/ogg=kestrelview.desktop\naudio/x-vorbis+ogg=kestrelview.desktop\n\n"
            "[Removed Associations]\nvideo/mp4=c.desktop;\n");
  Select({});
  EXPECT_EQ(List(), old);

  // The user gives the type to another program, as desktops write it, while the dialog is open.
  Select({"video/mp4", "audio/ogg"});
  const std::vector<FileTypeLine> before = Lines();
  temp_.Write("config/mimeapps.list",
              "[Default Applications]\nvideo/mp4=mpv.desktop;\n"
              "audio/ogg=kestrelview.desktop;x.desktop\n");
  std::vector<FileTypeLine> after = before;
  after[0].selected = after[2].selected = false;
  EXPECT_TRUE(types_.UpdateFileTypes(before, after));
  EXPECT_EQ(List(), "[Default Applications]\nvideo/mp4=mpv.desktop;\naudio/ogg=x.desktop\n");
}

TEST_F(FileTypesTest, OwnEntryIsThereWhileATypeIs) {
  Select({});
  EXPECT_FALSE(std::filesystem::exists(temp_.Path("config")));
  Select({"video/mp4", "application/x-kestrelview-resume"});
  EXPECT_TRUE(IsOwnDesktopEntry(Entry()));
  EXPECT_NE(temp_.Read("share/mime/packages/kestrelview.xml").find("*.kvr"), std::string::npos);
  EXPECT_EQ(mime_.rebuilds, 1);
  Select({"video/mp4"});
  EXPECT_NE(Entry(), "");
  Select({});
  EXPECT_EQ(Entry() + temp_.Read("share/mime/packages/kestrelview.xml"), "");
  EXPECT_EQ(mime_.rebuilds, 2);

  // An entry that the user wrote stays; an installed player needs none.
  temp_.Write("share/applications/kestrelview.desktop", "mine");
  Select({"video/mp4"});
  Select({});
  EXPECT_EQ(Entry(), "mine");
  std::filesystem::remove_all(temp_.Path("share"));
  temp_.Write("system/applications/kestrelview.desktop", "installed");
  temp_.Write("system/mime/packages/kestrelview.xml", "installed");
  Select({"video/mp4", "application/x-kestrelview-resume"});
  EXPECT_FALSE(std::filesystem::exists(temp_.Path("share")));
}

TEST_F(FileTypesTest, AListThatCannotBeReadIsNotReplaced) {
  temp_.MakeFolder("config/mimeapps.list");
  Select({"video/mp4"});
  EXPECT_TRUE(std::filesystem::is_directory(temp_.Path("config/mimeapps.list")));
  EXPECT_EQ(Entry(), "");
}

// What a desktop makes of it.
TEST_F(FileTypesTest, XdgMimeAgrees) {
  if (std::system("command -v xdg-mime >/dev/null") != 0) GTEST_SKIP() << "no xdg-mime";
  for (const char* const name : {"kestrelview", "other"}) {
    const std::string program = temp_.Write(std::string("bin/") + name, "#!/bin/sh\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  }
  const std::string exec = "Exec=" + temp_.Path("bin/other") + " %f\n";
  temp_.Write("share/applications/other.desktop",
              "[Desktop Entry]\nType=Application\nName=Other\n" + exec);
  const auto owner = [this](const std::string& type) {
    std::string command =
        "env -u DISPLAY -u XDG_CURRENT_DESKTOP -u KDE_FULL_SESSION HOME=@ XDG_CONFIG_HOME=@config "
        "XDG_DATA_HOME=@share XDG_DATA_DIRS=@system xdg-mime query default " +
        type + " > @out";
    for (std::size_t at = 0; (at = command.find('@')) != command.npos;) {
      command.replace(at, 1, temp_.Path());
    }
    EXPECT_EQ(std::system(command.c_str()), 0);
    const std::string answer = temp_.Read("out");
    return answer.substr(0, answer.find('\n'));
  };
  temp_.Write("config/mimeapps.list", "[Default Applications]\nvideo/mp4=other.desktop\n");
  EXPECT_EQ(owner("video/mp4") + owner("audio/ogg"), "other.desktop");
  Select({"video/mp4", "audio/ogg"});
  EXPECT_EQ(owner("video/mp4") + owner("audio/ogg"), "kestrelview.desktopkestrelview.desktop");
  Select({});
  EXPECT_EQ(owner("video/mp4") + owner("audio/ogg"), "other.desktop");
}

}  // namespace
}  // namespace kv
