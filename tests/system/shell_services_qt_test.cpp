#include "system/shell_services_qt.h"

#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "system/message_pump_qt.h"
#include "system/paths.h"

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <cstdlib>
#include <gtest/gtest.h>

namespace kv {
namespace {

class UrlCatcher : public QObject {
  Q_OBJECT
 public:
  UrlCatcher() {
    for (const char* scheme : {"file", "http"}) {
      QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "Open");
    }
  }
  Q_SLOT void Open(const QUrl& url) { opened = url.toEncoded().toStdString(); }

  std::string opened;
};

class ShellServicesTest : public testing::Test {
 protected:
  const TempFolder folder;
  ScriptedDialogs dialogs;
  ShellServicesQt shell{dialogs};
};

TEST_F(ShellServicesTest, OpensDocumentsAndPrograms) {
  UrlCatcher catcher;
  folder.Write("a b#\xFF?.txt", "");
  EXPECT_GT(shell.ShellOpenDocument(folder.Path("a b#\xFF?.txt"), "", "", "open"), 32);
  EXPECT_EQ(catcher.opened, "file://" + folder.Path("a%20b%23%FF%3F.txt"));
  EXPECT_GT(shell.ShellOpenDocument("http://host/?q=1", "", "", ""), 32);
  EXPECT_EQ(catcher.opened, "http://host/?q=1");

  EXPECT_EQ(shell.ShellOpenDocument(folder.Path("missing"), "", "", ""), 0);
  EXPECT_EQ(shell.ShellOpenDocument("no_such_program_kv", "x", "", ""), 0);
  EXPECT_GT(shell.ShellOpenDocument("touch", "\"a b\" c", folder.Path(), ""), 32);
  MessagePumpQt pump;
  for (int i = 0; i < 2000 && !FileExists(folder.Path("c")); ++i) pump.WaitAndPump(5);
  EXPECT_TRUE(FileExists(folder.Path("c")));
  EXPECT_TRUE(FileExists(folder.Path("a b")));
}

TEST_F(ShellServicesTest, TrashAsksFirst) {
  const std::string trash = folder.MakeFolder("data");
  ASSERT_EQ(setenv("XDG_DATA_HOME", trash.c_str(), 1), 0);
  const std::string file = folder.Write("a.mp3", "x");
  dialogs.WillAnswer(BoxAnswer::kNo);
  EXPECT_NE(shell.SendToRecycleBin(file, true, false), 0);
  EXPECT_TRUE(FileExists(file));
  EXPECT_EQ(dialogs.LastText(), "Are you sure you want to move \"a.mp3\" to the trash?");

  dialogs.WillAnswer(BoxAnswer::kYes);
  EXPECT_EQ(shell.SendToRecycleBin(file, true, false), 0);
  EXPECT_FALSE(FileExists(file));
  EXPECT_TRUE(FileExists(trash + "/Trash/files/a.mp3"));

  const std::string odd = folder.Write("\xE9t\xE9.mp3", "x");
  EXPECT_EQ(shell.SendToRecycleBin(odd, false, true), 0);
  EXPECT_FALSE(FileExists(odd));
  EXPECT_TRUE(FileExists(trash + "/Trash/files/\xEF\xBF\xBDt\xEF\xBF\xBD.mp3"));
  EXPECT_NE(shell.SendToRecycleBin(odd, false, true), 0);
  unsetenv("XDG_DATA_HOME");
}

TEST_F(ShellServicesTest, NoSoundOutputIsTold) {
  ASSERT_EQ(setenv("PULSE_SERVER", "unix:/nonexistent/kestrelview", 1), 0);
  shell.PlaySoundEx("/no/such.wav", true, false, false, true);
  EXPECT_EQ(dialogs.LastText(), "Unable to init SOUND-DECVICE");
  unsetenv("PULSE_SERVER");
}

}  // namespace
}  // namespace kv

#include "shell_services_qt_test.moc"
