#include "system/dialogs_qt.h"

#include "support/temp_folder.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>

namespace kv {
namespace {

// Does `action` to the dialog of type T as soon as it is open.
template <typename T>
void WhenOpen(std::function<void(T&)> action) {
  auto* const timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, action = std::move(action)] {
    timer->deleteLater();
    timer->stop();
    auto* const dialog = qobject_cast<T*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    action(*dialog);
  });
  timer->start(0);
}

TEST(DialogsQt, BoxesAnswerAndShowPlainText) {
  DialogsQt dialogs;
  const struct {
    BoxButtons buttons;
    QMessageBox::StandardButton press;  // NoButton: closed by its frame
    BoxAnswer answer;
  } cases[] = {
      {BoxButtons::kOk, QMessageBox::NoButton, BoxAnswer::kOk},
      {BoxButtons::kOkCancel, QMessageBox::Ok, BoxAnswer::kOk},
      {BoxButtons::kOkCancel, QMessageBox::NoButton, BoxAnswer::kCancel},
      {BoxButtons::kYesNo, QMessageBox::NoButton, BoxAnswer::kNo},
      {BoxButtons::kYesNoCancel, QMessageBox::No, BoxAnswer::kNo},
      {BoxButtons::kYesNoCancel, QMessageBox::NoButton, BoxAnswer::kCancel},
  };
  for (const auto& c : cases) {
    WhenOpen<QMessageBox>([&c](QMessageBox& box) {
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(box.text(), QStringLiteral("<b>\uFFFD"));
      if (c.press == QMessageBox::NoButton) box.close();
      if (auto* const button = box.button(c.press)) button->click();
    });
    EXPECT_EQ(dialogs.ShowMessageBox({"<b>\xFF", BoxIcon::kQuestion, c.buttons, ""}), c.answer);
  }
}

TEST(DialogsQt, TheOwnerMayGoWhileABoxIsOpen) {
  auto* const owner = new QWidget;
  DialogsQt dialogs(owner);
  WhenOpen<QMessageBox>([owner](QMessageBox&) { delete owner; });
  EXPECT_EQ(dialogs.ShowMessageBox({"x", BoxIcon::kNone, BoxButtons::kYesNo, ""}), BoxAnswer::kNo);
  auto* const next = new QWidget;
  DialogsQt others(next);
  WhenOpen<QFileDialog>([next](QFileDialog&) { delete next; });
  EXPECT_FALSE(others.ShowFileDialog({}).accepted);
}

TEST(DialogsQt, FileDialogFiltersAnyCaseAndKeepsTheGroup) {
  const TempFolder folder;
  const std::string file = folder.Write("SONG.MP3", "x");
  DialogsQt dialogs;
  FileDialogRequest request;
  request.filter = "Text|*.txt|Media|*.mp3;*.wav|All|*.*";
  request.folder = folder.Path();
  request.file_name = "SONG.MP3";
  for (const bool first : {true, false}) {
    WhenOpen<QFileDialog>([first](QFileDialog& dialog) {
      const QStringList groups = dialog.nameFilters();
      ASSERT_EQ(groups.size(), 3);
      EXPECT_EQ(dialog.selectedNameFilter(), QLatin1String(first ? "Text" : "Media"));
      EXPECT_TRUE(groups[1].contains(QStringLiteral("*.[mM][pP]3 *.[wW][aA][vV])")));
      EXPECT_EQ(groups[2], QStringLiteral("All (*)"));
      dialog.selectNameFilter(groups[1]);
      QMetaObject::invokeMethod(&dialog, "accept");
    });
    const FileDialogResult result = dialogs.ShowFileDialog(request);
    EXPECT_TRUE(result.accepted);
    EXPECT_EQ(result.file_name, file);
  }
}

TEST(DialogsQt, ColorsAreBlueGreenRed) {
  DialogsQt dialogs;
  CustomColors custom{};
  custom[0] = 0x0000FF;
  custom[1] = -1;
  WhenOpen<QColorDialog>([](QColorDialog& dialog) {
    EXPECT_EQ(dialog.currentColor(), QColor(0x33, 0x22, 0x11));
    EXPECT_EQ(QColorDialog::customColor(0), QColor(Qt::red));
    EXPECT_EQ(QColorDialog::customColor(1), QColor(Qt::black));
    QColorDialog::setCustomColor(2, QColor(1, 2, 3));
    dialog.setCurrentColor(QColor(0xAA, 0xBB, 0xCC));
    dialog.accept();
  });
  const ColorDialogResult chosen = dialogs.ShowColorDialog(0x112233, custom);
  EXPECT_EQ(chosen.color, 0xCCBBAA);
  EXPECT_EQ(chosen.custom[2], 0x030201);

  WhenOpen<QColorDialog>([](QColorDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(dialogs.ShowColorDialog(0, custom).color, -1);
}

}  // namespace
}  // namespace kv
