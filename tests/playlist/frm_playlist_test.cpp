// The playlist window under the user's hands: keys, mouse, drops, what it remembers, how it ends.
#include "playlist/playlist_commands.h"
#include "playlist/playlist_window.h"
#include "system/text_platform_qt.h"

#include <QApplication>
#include <QDropEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QTest>

namespace kv {
namespace {

using Texts = std::vector<std::string>;
using Rows = std::vector<int>;

struct PlaylistWindowTest : testing::Test {
  void OpenLetters() {
    room.OpenWith({"/m/c.mp3", "/m/a.mp3", "/m/b.mp3", "/m/d.mp3"});
    ASSERT_TRUE(QTest::qWaitForWindowActive(room.form_window.data()));
  }
  QAction* Entry(const char* name) {
    return room.form_window->findChild<QAction*>(QString::fromLatin1(name));
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&room.View(), key, modifiers);
  }
  Rows SelectedInView() {
    std::set<int> rows;
    for (const QModelIndex& index : room.View().selectionModel()->selectedRows()) {
      rows.insert(index.row() + 1);
    }
    return {rows.begin(), rows.end()};
  }

  WindowRoom room;
};

TEST_F(PlaylistWindowTest, KeysDoWhatTheTableSays) {
  OpenLetters();
  Key(Qt::Key_Home);
  EXPECT_EQ(room.rows.SelectedRows(), Rows{1});
  Key(Qt::Key_D);  // no search by typing
  EXPECT_EQ(room.rows.SelectedRows(), Rows{1});
  Key(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(room.Items(), (Texts{"/m/a.mp3", "/m/c.mp3", "/m/b.mp3", "/m/d.mp3"}));
  EXPECT_EQ(SelectedInView(), Rows{2});
  Key(Qt::Key_Return);
  for (const Qt::Key key : {Qt::Key_O, Qt::Key_S, Qt::Key_C, Qt::Key_Q}) {
    Key(key, Qt::ControlModifier);
  }
  EXPECT_EQ(room.log, (Texts{"play 2", "open", "save as", "copy /m/c.mp3", "quick search"}));
  Key(Qt::Key_Delete);
  Key(Qt::Key_Delete);  // walks down the list
  EXPECT_EQ(room.Items(), (Texts{"/m/a.mp3", "/m/d.mp3"}));
  Key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(SelectedInView(), (Rows{1, 2}));
  Key(Qt::Key_Delete, Qt::ShiftModifier);
  EXPECT_EQ(room.list.Count(), 0);
  Key(Qt::Key_Return);  // nothing to play
  EXPECT_EQ(room.log.size(), 5U);
}

TEST_F(PlaylistWindowTest, SelectionIsOneInRowsAndView) {
  OpenLetters();
  PlaylistView& view = room.View();
  const auto click = [&](int row, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                      view.visualRect(view.model()->index(row - 1, 1)).center());
  };
  click(2, {});
  click(4, Qt::ControlModifier);
  EXPECT_EQ(room.rows.SelectedRows(), (Rows{2, 4}));
  EXPECT_EQ(room.form.ClickedRow, 4);
  click(3, {});
  EXPECT_EQ(room.rows.SelectedRows(), Rows{3});
  EXPECT_EQ(room.form.SearchRow, 4);
  room.rows.SelectOnly(1);
  EXPECT_EQ(SelectedInView(), Rows{1});
  EXPECT_EQ(view.SelectedRow(), 1);
  room.order.SList();
  EXPECT_EQ(SelectedInView(), room.rows.SelectedRows());
}

TEST_F(PlaylistWindowTest, ManySeparateRowsAreOneSelectionToo) {
  room.OpenWith(Texts(600, "/m/a.mp3"));
  for (int row = 1; row <= 600; row += 2) room.rows.Select(row, true);
  room.rows.SelectRange(101, 500, false);
  EXPECT_EQ(SelectedInView(), room.rows.SelectedRows());
  EXPECT_EQ(SelectedInView().size(), 100U);
  room.order.RemoveSel(false);
  EXPECT_EQ(room.View().model()->rowCount(), 500);
  room.rows.SelectOnly(450);
  EXPECT_EQ(SelectedInView(), Rows{450});
}

TEST_F(PlaylistWindowTest, HeaderSortsAndDoubleClickPlays) {
  OpenLetters();
  PlaylistView& view = room.View();
  QHeaderView* const header = view.horizontalHeader();
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                    QPoint(header->sectionViewportPosition(1) + 40, 8));
  EXPECT_EQ(room.Items().front(), "/m/a.mp3");
  const QPoint third = view.visualRect(view.model()->index(2, 1)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, third);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, third);
  EXPECT_EQ(room.log, Texts{"play 3"});
}

TEST_F(PlaylistWindowTest, FollowsThePlayerAndTheSettings) {
  OpenLetters();
  room.display = "some title";
  const QAbstractItemModel& model = *room.View().model();
  for (const int playing : {3, 1}) {
    room.settings.PlaylistIndex = playing;
    room.time.Advance(100);
    for (const int row : {1, 3}) {
      EXPECT_EQ(model.index(row - 1, 0).data(RowsModel::kPlayingRole).toBool(), row == playing);
    }
  }
  EXPECT_EQ(room.form_window->findChild<TextLine*>(QStringLiteral("Panel2"))->Text(), "some title");
  Entry("autonext")->trigger();
  EXPECT_TRUE(IsOn(room.settings.AutoNext));
  room.settings.AutoNext = 0;
  room.time.Advance(100);
  EXPECT_FALSE(Entry("autonext")->isChecked());
  for (const char* title : {"T/m/c.mp3", ""}) {
    Entry("showdetails")->trigger();
    room.Run(20);
    EXPECT_EQ(model.index(0, 6).data().toString().toStdString(), title);
  }
  room.form_window->hide();
  EXPECT_EQ(room.time.ActiveTimers(), 0);
}

TEST_F(PlaylistWindowTest, RemembersWhereItWasAndItsColumns) {
  room.settings.PlaylistColumnWidth.fill(1500);
  room.settings.PlaylistColumnPosition = {12, 1, 1, -5, 7, 7, 7, 8, 9, 10, 11, 2};  // no order
  room.settings.PlaylistWidth = 15 * 500;
  room.settings.PlaylistHeight = 15 * 300;
  room.settings.PlaylistLeft = -15 * 9000;
  OpenLetters();
  QHeaderView& header = *room.View().horizontalHeader();
  EXPECT_EQ((Rows{header.visualIndex(3), header.visualIndex(1), header.visualIndex(0)}),
            (Rows{0, 1, 11}));
  EXPECT_EQ(header.sectionSize(5), 100);
  EXPECT_EQ(room.form_window->size(), QSize(500, 300));
  EXPECT_GE(room.form_window->x(), 0);
  room.form_window->resize(600, 320);
  header.resizeSection(5, 77);
  room.time.Advance(1000);
  EXPECT_EQ(room.settings.PlaylistWidth, 15 * 600);
  EXPECT_EQ(room.settings.PlaylistColumnWidth[5], 15 * 77);
  EXPECT_EQ(room.settings.PlaylistColumnPosition[0], 12);
}

TEST_F(PlaylistWindowTest, ClosedByTheUserItStaysClosed) {
  OpenLetters();
  Key(Qt::Key_Escape);
  room.Process();
  EXPECT_EQ(room.form_window, nullptr);
  EXPECT_FALSE(IsOn(room.settings.PlaylistVisible));
  EXPECT_EQ(room.rows.RowCount(), 0);
  room.Open();
  EXPECT_EQ(room.rows.RowCount(), 4);
  room.form_window->Form_Unload(false);
  EXPECT_TRUE(IsOn(room.settings.PlaylistVisible));
}

TEST_F(PlaylistWindowTest, ClosedInTheMiddleOfAWalkItGoesWhenTheWalkIsOver) {
  OpenLetters();
  room.dialogs.WillPickFolder("/music");
  bool there = false;
  room.on_call = [&] {
    EXPECT_TRUE(room.session.ScanWindowOpen);
    room.form_window->Form_Unload(true);
    room.Process();
    there = room.form_window != nullptr;
    EXPECT_TRUE(room.session.ScanAbort);
    room.list.add("/m/e.mp3");
  };
  room.form_window->Run(ListCommand::kAdd);
  EXPECT_TRUE(there);
  EXPECT_FALSE(room.session.ScanWindowOpen);
  EXPECT_FALSE(room.session.ScanAbort);
  room.Process();
  EXPECT_EQ(room.form_window, nullptr);
}

TEST_F(PlaylistWindowTest, TakesDroppedFilesByteForByteAndTexts) {
  OpenLetters();
  const auto drop = [&](const char* format, const QByteArray& bytes) {
    QMimeData data;
    data.setData(QString::fromLatin1(format), bytes);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(room.View().viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    event.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(room.View().viewport(), &event);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    room.Process();
  };
  drop("text/uri-list", "file:///m/a%20%FF.mp3\r\nfile:///m/b.mp3\r\n");
  drop("text/plain", "http://host/live.mp3\n");
  EXPECT_EQ(room.log, (Texts{"drop /m/a \xFF.mp3", "drop /m/b.mp3", "add http://host/live.mp3"}));
  EXPECT_EQ(room.rows.Status(), "4 items in list.");
}

TEST_F(PlaylistWindowTest, MenuOffersWhatCanBeDone) {
  const std::string folder = room.temp.Path("");
  room.OpenWith({folder + "a.mp3"});
  for (const bool selected : {false, true}) {
    room.rows.SelectOnly(selected ? 1 : 0);
    Q_EMIT room.View().MenuWanted(QPoint());
    EXPECT_EQ(Entry("mnuCopyFileName")->isEnabled(), selected);
    room.form_window->findChild<QMenu*>(QStringLiteral("mnu"))->close();
  }
  Entry("mnuOpenSourceFolder")->trigger();
  ASSERT_EQ(room.services.opened.size(), 1U);
  EXPECT_EQ(room.services.opened[0].file, folder);
}

}  // namespace
}  // namespace kv
