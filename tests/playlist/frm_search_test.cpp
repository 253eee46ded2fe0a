// The two searches at the keyboard.
#include "playlist/frm_search.h"

#include "playlist/playlist_window.h"

#include <QLabel>
#include <QTest>
#include <QTimer>

namespace kv {
namespace {

using Texts = std::vector<std::string>;

struct SearchWindowsTest : testing::Test {
  void Open(const char* text) {
    room.settings.QuickSearchText = text;
    quick = new frmQuickSearch(room.quick, room.time, QPalette(), nullptr);
    quick->Form_Load();
    box = quick->findChild<QLineEdit*>();
    lines = quick->findChild<QListView*>();
    ASSERT_TRUE(QTest::qWaitForWindowActive(quick.data()));
  }
  ~SearchWindowsTest() override { delete quick.data(); }

  WindowRoom room;
  QPointer<frmQuickSearch> quick;
  QLineEdit* box = nullptr;
  QListView* lines = nullptr;
};

TEST_F(SearchWindowsTest, QuickSearchFindsAsOneTypesAndJumps) {
  for (const char* path : {"/m/one.mp3", "/m/two.mp3", "/m/three.mp3"}) room.list.add(path);
  Open("**");
  EXPECT_TRUE(quick->findChild<QLabel*>()->isVisible());
  EXPECT_EQ(lines->model()->rowCount(), 3);
  QTest::keyClick(lines, Qt::Key_C, Qt::ControlModifier);  // no line is current: nothing to copy
  QTest::keyClicks(box, QStringLiteral("t"));              // between the stars
  EXPECT_EQ(box->text(), QStringLiteral("*t*"));
  EXPECT_EQ(lines->model()->rowCount(), 2);
  room.Open();
  room.time.Advance(100);
  EXPECT_FALSE(quick->findChild<QLabel*>()->isVisible());
  QTest::keyClick(box, Qt::Key_Down);
  EXPECT_TRUE(lines->hasFocus());
  EXPECT_EQ(lines->currentIndex().data().toString(), QStringLiteral("003 : /m/three.mp3"));
  QTest::keyClick(lines, Qt::Key_Return);
  room.Process();
  EXPECT_EQ(room.log, Texts{"next 3"});
  EXPECT_EQ(room.rows.SelectedRows(), std::vector<int>{3});
  EXPECT_FALSE(room.session.QuickSearchOpen);
  EXPECT_EQ(room.settings.QuickSearchText, "*t*");
}

TEST_F(SearchWindowsTest, QuickSearchEndsWithoutAJump) {
  room.list.add("/m/one.mp3");
  Open("\xF0\x9F\x8E\xB5 x");
  EXPECT_EQ(box->cursorPosition(), box->text().size());
  QTest::keyClick(box, Qt::Key_Return);  // nothing found
  room.Process();
  ASSERT_NE(quick, nullptr);
  room.on_call = [&] { quick->Form_Unload(); };  // the jump ends it
  box->setText(QStringLiteral("*one*"));
  QTest::keyClick(box, Qt::Key_Return);
  room.Process();
  EXPECT_EQ(room.log, Texts{"next 1"});
  EXPECT_EQ(quick, nullptr);
  room.on_call = {};
  Open("*");
  QTest::keyClick(quick.data(), Qt::Key_Escape);
  room.Process();
  EXPECT_EQ(quick, nullptr);
}

// Does something to the modal dialog when it is up.
template <class Do>
void WithDialog(Do action) {
  QTimer::singleShot(0, [action] {
    auto* const dialog = qobject_cast<frmSearch*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    action(*dialog);
  });
}

TEST_F(SearchWindowsTest, DialogAsksUntilItHasKeywordAndField) {
  room.OpenWith({"/m/one.mp3", "/m/two.mp3"});
  WithDialog([this](frmSearch& dialog) {
    auto* const keyword = dialog.findChild<QLineEdit*>();
    auto* const fields = dialog.findChild<QListWidget*>();
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(room.dialogs.LastText(), "Please enter a keyword to search for!");
    keyword->setText(QStringLiteral("*TWO*"));
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(room.dialogs.LastText(), "Please select one or more fields to search in!");
    EXPECT_TRUE(dialog.isVisible());
    fields->item(0)->setSelected(true);
    QTest::keyClick(&dialog, Qt::Key_F3);
    EXPECT_FALSE(dialog.isVisible());
  });
  room.form_window->Run(ListCommand::kFind);
  EXPECT_EQ(room.rows.SelectedRows(), std::vector<int>{2});
  EXPECT_EQ(room.form_window->findChild<frmSearchVis*>(), nullptr);
  WithDialog([](frmSearch& dialog) {
    EXPECT_EQ(dialog.findChild<QLineEdit*>()->selectedText(), QStringLiteral("*TWO*"));
    EXPECT_TRUE(dialog.findChild<QListWidget*>()->item(0)->isSelected());
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  room.rows.SelectOnly(1);
  room.form_window->Run(ListCommand::kFind);
  EXPECT_EQ(room.rows.SelectedRows(), std::vector<int>{1});

  // It ends with its window.
  const std::size_t boxes = room.dialogs.Boxes().size();
  WithDialog([this](frmSearch& /*dialog*/) { room.form_window->Form_Unload(false); });
  room.form_window->Run(ListCommand::kFind);
  room.Process();
  EXPECT_EQ(room.form_window, nullptr);
  EXPECT_EQ(room.dialogs.Boxes().size(), boxes);
}

}  // namespace
}  // namespace kv
