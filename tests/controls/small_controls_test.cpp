// The drawn chart, the groove, the colour chooser and the picture cache as their hosts see them.
#include "controls/color_select.h"
#include "controls/line3d.h"
#include "controls/std_pictures.h"
#include "controls/trend_chart_widget.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <QImage>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>
#include <optional>
#include <utility>
#include <vector>

namespace kv {
namespace {

QImage Picture(QWidget& widget, double scale) {
  QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::magenta);
  widget.render(&image);
  return image;
}

// A chart that shifts its picture must look like one that draws all of it.
TEST(TrendChartWidget, ShiftedTraceIsTheDrawnTrace) {
  for (const double scale : {1.0, 1.25, 2.0}) {
    for (const bool motion : {false, true}) {
      VirtualTime time;
      TrendChart shifted(time);
      TrendChart drawn(time);
      for (TrendChart* chart : {&shifted, &drawn}) {
        chart->resize(60, 40);
        chart->show();
        chart->Model().SetGridMotion(motion);
      }
      QImage last;
      for (int i = 0; i < 26; ++i) {
        const double value = i * 37 % 101;
        shifted.Model().SetValue(value);
        drawn.Model().SetValue(value);
        if (i % 3 == 0) last = Picture(shifted, scale);  // sometimes several steps in one
      }
      ASSERT_EQ(Picture(shifted, scale), Picture(drawn, scale)) << scale << motion;
      ASSERT_NE(Picture(shifted, scale), last);
    }
  }
}

// Answers the colour dialog.
class ColorDialogs : public ScriptedDialogs {
 public:
  ColorDialogResult ShowColorDialog(std::int32_t initial, const CustomColors& custom) override {
    asked_from = initial;
    offered = custom;
    return answer;
  }
  ColorDialogResult answer;
  std::int32_t asked_from = -1;
  CustomColors offered{};
};

TEST(ColorSelect, KeepsTheUsersColoursAndTellsTheChange) {
  TempFolder folder;
  Registry registry(folder.Path() + "registry.ini");
  ColorDialogs dialogs;
  pucColorSelect chooser(dialogs, registry);
  auto* const cmdBrowse = chooser.findChild<QToolButton*>(QStringLiteral("cmdBrowse"));
  std::vector<std::pair<std::int32_t, std::int32_t>> changes;
  chooser.ColourChange = [&changes](std::int32_t old, std::int32_t now) {
    changes.emplace_back(old, now);
  };
  chooser.SetColour(0x102030);

  dialogs.answer.custom.fill(7);
  QTest::mouseClick(cmdBrowse, Qt::LeftButton);  // cancelled
  EXPECT_EQ(dialogs.asked_from, 0x102030);
  EXPECT_EQ(chooser.Colour(), 0x102030);
  dialogs.answer.color = 0x405060;
  QTest::mouseClick(cmdBrowse, Qt::LeftButton);
  EXPECT_EQ(dialogs.offered, CustomColors{});  // the cancelled ones were not kept
  EXPECT_EQ(chooser.Colour(), 0x405060);
  EXPECT_EQ(changes, (std::vector<std::pair<std::int32_t, std::int32_t>>{{0x102030, 0x405060}}));

  pucColorSelect another(dialogs, registry);
  QTest::mouseClick(another.findChild<QToolButton*>(QStringLiteral("cmdBrowse")), Qt::LeftButton);
  EXPECT_EQ(dialogs.offered, dialogs.answer.custom);

  int right = 0;
  chooser.RightClick = [&right] { ++right; };
  ColorSelectProperties disabled;
  disabled.Enabled = false;
  chooser.LoadProperties(disabled);
  QTest::mouseClick(cmdBrowse, Qt::LeftButton);
  EXPECT_EQ(changes.size(), 1U);
  chooser.LoadProperties({});
  QTest::mouseClick(cmdBrowse, Qt::RightButton);
  QTest::mouseClick(&chooser, Qt::RightButton);
  EXPECT_EQ(right, 2);
}

TEST(StdPictures, FilesOfAnyName) {
  TempFolder folder;
  QImage image(24, 24, QImage::Format_ARGB32);
  image.fill(Qt::red);
  const std::string file = folder.Path() + "n\xE9.png";  // a name that is not UTF-8
  ASSERT_TRUE(image.save(QString::fromStdString(folder.Path() + "x.png")));
  ASSERT_EQ(std::rename((folder.Path() + "x.png").c_str(), file.c_str()), 0);
  EXPECT_EQ(StdPictureClass::GetIconFromFile(file).availableSizes().value(0), QSize(24, 24));
  EXPECT_TRUE(StdPictureClass::GetIconFromFile(file, 1).isNull());
  EXPECT_TRUE(StdPictureClass::GetIconFromFile(folder.Path()).isNull());
}

}  // namespace
}  // namespace kv
