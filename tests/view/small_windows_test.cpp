// About and help: what is read there and where links lead.
#include "support/fake_shell_services.h"
#include "support/temp_folder.h"
#include "view/frm_about.h"
#include "view/frm_help.h"

#include <QLabel>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

namespace kv {
namespace {

using namespace Qt::StringLiterals;

TEST(AboutTest, TellsTheVersionAndOpensLinks) {
  FakeShellServices shell;
  frmAbout about({1, 20, 3}, QStringLiteral("/nowhere.svg"), shell, QPalette(), nullptr);
  EXPECT_EQ(about.windowTitle(), u"About - Kestrelview"_s);
  EXPECT_EQ(about.findChild<QLabel*>(u"lblVersion"_s)->text(), u"Version 1.20.3"_s);
  int links = 0;
  for (QLabel* const label : about.findChildren<QLabel*>()) {
    if (!label->text().contains(u"<a "_s)) continue;
    ++links;
    Q_EMIT label->linkActivated(label->toolTip());
  }
  EXPECT_EQ(shell.opened.size(), static_cast<std::size_t>(links));
  EXPECT_EQ(shell.opened.at(0).file, "https://www.gnu.org/licenses/");

  about.show();
  QTest::keyClick(&about, Qt::Key_Escape);
  EXPECT_FALSE(about.isVisible());
  about.show();
  QTest::keyClick(&about, Qt::Key_Return);
  EXPECT_FALSE(about.isVisible());
}

class HelpTest : public testing::Test {
 protected:
  void Follow(frmHelp& help, const char* link) {
    Q_EMIT help.Browser().anchorClicked(QUrl(QString::fromUtf8(link)));
  }

  TempFolder temp;
  FakeShellServices shell;
};

TEST_F(HelpTest, WalksItsPagesAndLeavesTheRestToTheDesktop) {
  const std::string index = temp.Write("h lp/index.htm", "<p>first</p>");
  temp.Write("h lp/keys.htm", "<p>second</p>");
  frmHelp help(index, shell, nullptr);
  help.show();
  QTextBrowser& browser = help.Browser();
  EXPECT_EQ(browser.toPlainText(), u"first"_s);
  Follow(help, "keys.htm#top");
  EXPECT_EQ(browser.toPlainText(), u"second"_s);
  QTest::keyClick(&browser, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(browser.toPlainText(), u"first"_s);
  QTest::keyClick(&browser, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(browser.toPlainText(), u"second"_s);
  Follow(help, "https://example.org/a b.htm");
  Follow(help, "notes.txt");
  EXPECT_EQ(browser.toPlainText(), u"second"_s);
  ASSERT_EQ(shell.opened.size(), 2U);
  EXPECT_EQ(shell.opened[0].file, "https://example.org/a%20b.htm");
  EXPECT_EQ(shell.opened[1].file, temp.Path("h lp/notes.txt"));
  help.resize(500, 400);
  EXPECT_EQ(browser.geometry(), QRect(0, 0, 500, 400));
  QTest::keyClick(&browser, Qt::Key_Escape);
  EXPECT_FALSE(help.isVisible());
}

TEST_F(HelpTest, SaysThatAPageIsMissing) {
  frmHelp help(temp.Path("index.htm"), shell, nullptr);
  EXPECT_TRUE(help.Browser().toPlainText().contains(u"index.htm"_s));
}

}  // namespace
}  // namespace kv
