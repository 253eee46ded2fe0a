// Help: what is read there and where links lead.
#include "view/frm_help.h"

#include "support/fake_shell_services.h"
#include "support/temp_folder.h"

#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

namespace kv {
namespace {

using namespace Qt::StringLiterals;

TEST(HelpTest, WalksItsPagesAndLeavesTheRestToTheDesktop) {
  const TempFolder temp;
  FakeShellServices shell;
  const std::string index = temp.Write("h lp/index.htm", "<p>first</p>");
  temp.Write("h lp/keys.htm", "<p>second</p>");
  frmHelp help(index, shell, nullptr);
  help.show();
  QTextBrowser& browser = help.Browser();
  const auto follow = [&](const char* link) {
    Q_EMIT browser.anchorClicked(QUrl(QString::fromUtf8(link)));
  };
  EXPECT_EQ(browser.toPlainText(), u"first"_s);
  follow("keys.htm#top");
  EXPECT_EQ(browser.toPlainText(), u"second"_s);
  QTest::keyClick(&browser, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(browser.toPlainText(), u"first"_s);
  QTest::keyClick(&browser, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(browser.toPlainText(), u"second"_s);
  follow("https://example.org/a b.htm");
  follow("notes.txt");
  EXPECT_EQ(browser.toPlainText(), u"second"_s);
  ASSERT_EQ(shell.opened.size(), 2U);
  EXPECT_EQ(shell.opened[0].file, "https://example.org/a%20b.htm");
  EXPECT_EQ(shell.opened[1].file, temp.Path("h lp/notes.txt"));
  QTest::keyClick(&browser, Qt::Key_Escape);
  EXPECT_FALSE(help.isVisible());
  frmHelp missing(temp.Path("index.htm"), shell, nullptr);
  EXPECT_TRUE(missing.Browser().toPlainText().contains(u"index.htm"_s));
}

}  // namespace
}  // namespace kv
