// The windows of options, colours and colour capture, by their controls.
#include "controls/color_qt.h"
#include "controls/scroller.h"
#include "state/color_file.h"
#include "state/color_slots.h"
#include "state/desktop_entry.h"
#include "state/dialog_look_qt.h"
#include "state/frm_capture.h"
#include "state/frm_colors.h"
#include "state/frm_settings.h"
#include "state/mime_types_qt.h"
#include "state/settings_file.h"
#include "support/fake_pump.h"
#include "support/temp_folder.h"
#include "system/files.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOption>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace kv {
namespace {

class OneTypeEach : public MimeTypes {
 public:
  std::vector<std::string> TypesOf(const std::string& extension) const override {
    return {"video/" + extension};
  }
  std::string Comment(const std::string& type) const override { return type; }
  void Rebuild(const std::string& /*mime_folder*/) override {}
};

struct Options : testing::Test {
  void Open() {
    form_.reset();
    form_ = std::make_unique<frmSettings>(
        settings_, types_, "*.mp4;*.avi;*.ts", [this] { ++icon_refreshes_; }, nullptr);
  }
  template <class Widget>
  Widget& Find(std::string_view name) {
    auto* const widget = form_->findChild<Widget*>(
        QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    EXPECT_NE(widget, nullptr) << name;
    return *widget;
  }
  void Ok() { Find<QPushButton>("Command1").click(); }
  std::string List() const { return temp_.Read("config/mimeapps.list"); }

  TempFolder temp_;
  OneTypeEach mime_;
  FileTypes types_{mime_, {temp_.Path("config/"), temp_.Path("share/"), {}, "/k", ""}};
  Settings settings_;
  int icon_refreshes_ = 0;
  std::unique_ptr<frmSettings> form_;
};

TEST_F(Options, EachControlStoresItsFieldAlone) {
  for (const OptionRow& row : OptionRows()) {
    settings_ = Settings();
    settings_.VuRefreshRate = 25;
    settings_.AudioBufferSize = 64;
    settings_.AudioBufferCount = 16;
    settings_.AudioSampleRate = 11025;
    Open();
    std::int32_t expected = -1;
    Settings other = settings_;
    switch (row.kind) {
      case OptionKind::kOffCheck:
        ASSERT_TRUE(Find<QCheckBox>(row.control).isChecked());
        [[fallthrough]];
      case OptionKind::kCheck:
        EXPECT_EQ(Find<QCheckBox>(row.control).text().toStdString(), row.caption);
        Find<QCheckBox>(row.control).toggle();
        break;
      case OptionKind::kChoice:
        Find<QRadioButton>(row.control).setChecked(true);
        expected = row.value;
        break;
      case OptionKind::kIndexList:
      case OptionKind::kValueList: {
        auto& box = Find<QComboBox>(row.control);
        const bool index = row.kind == OptionKind::kIndexList;
        const std::int32_t value = OptionValue(settings_, row.field).value_or(-1);
        EXPECT_EQ(box.currentText().toStdString(), index ? "100 ms" : std::to_string(value));
        box.setCurrentIndex(box.count() - 1);
        expected = index ? 9 : box.currentText().toInt();
        break;
      }
      case OptionKind::kSlider:
        EXPECT_EQ(Find<Scroller>(row.control).Model().Value(), kRefreshTop / 2);
        Find<Scroller>(row.control).Model().SetValue(kRefreshTop);
        EXPECT_EQ(Find<QLabel>("Label2").text(), QStringLiteral("1"));
        EXPECT_EQ(settings_.VuRefreshRate, 1);  // at once
        expected = 1;
        break;
    }
    Ok();
    EXPECT_EQ(OptionValue(settings_, row.field), expected) << row.control;
    ASSERT_TRUE(SetOptionValue(other, row.field, expected));
    EXPECT_EQ(settings_, other) << row.control;
  }
}

TEST_F(Options, ValuesThatNoListHasStay) {
  settings_.CpuGraphInterval = 77;
  settings_.AudioBufferSize = 65;
  settings_.AudioBufferCount = -1;
  settings_.AudioSampleRate = 1;
  settings_.VuRefreshRate = 1000;
  settings_.AutoStart = settings_.AutoNext = 1;
  Settings expected = settings_;
  Open();
  form_->show();
  Find<QPushButton>("Command2").click();
  EXPECT_EQ(settings_, expected);
  Open();
  Ok();
  expected.AudioSampleRate = 8000;
  expected.AutoStart = -1;
  expected.ShowFramesWhileScrolling = settings_.ShowFramesWhileScrolling;
  EXPECT_EQ(settings_, expected);
  EXPECT_FALSE(form_->WantsColors());
  Open();
  Find<QPushButton>("Command3").click();
  EXPECT_TRUE(form_->WantsColors());
  EXPECT_EQ(form_->result(), QDialog::Accepted);
}

TEST_F(Options, FileTypesAreTouchedOnlyWhenTheyDiffer) {
  const std::string head = "[Default Applications]\n";
  Open();
  Ok();
  Open();
  Find<QPushButton>("Command5").click();
  Find<QPushButton>("Command2").click();
  EXPECT_EQ(temp_.Entries() + icon_refreshes_, 0);
  Open();
  Find<QPushButton>("Command5").click();
  Find<QTreeWidget>("List1").topLevelItem(1)->setCheckState(0, Qt::Unchecked);
  Ok();
  EXPECT_EQ(List(), head + "video/mp4=kestrelview.desktop\nvideo/ts=kestrelview.desktop\n");
  Open();
  EXPECT_EQ(Find<QTreeWidget>("List1").topLevelItem(0)->checkState(0), Qt::Checked);
  EXPECT_EQ(Find<QTreeWidget>("List1").topLevelItem(1)->checkState(0), Qt::Unchecked);
  Find<QPushButton>("Command6").click();
  Ok();
  EXPECT_EQ(List(), head);
  EXPECT_EQ(icon_refreshes_, 2);
}

// Every control can be reached by keys alone, and its page with it.
TEST_F(Options, TheKeyboardReachesEverything) {
  Open();
  form_->show();
  auto& tabs = Find<QTabWidget>("SSTab1");
  std::set<std::string, std::less<>> reached;
  for (int page = 0; page < tabs.count(); ++page) {
    tabs.setCurrentIndex(page);
    tabs.setFocus();
    for (int i = 0; i < 40; ++i) {
      QTest::keyClick(form_->focusWidget(), Qt::Key_Tab);
      reached.insert(form_->focusWidget()->objectName().toStdString());
    }
  }
  // The three that belong to the graph need the graph.
  const auto rows = OptionRows();
  EXPECT_EQ(std::count_if(rows.begin(), rows.end(),
                          [&](const OptionRow& row) { return reached.count(row.control) == 0; }),
            3);
}

// Who works with keys sees where they go.
TEST(DialogLook, ShowsWhatHasTheFocus) {
  const auto button = [](QStyle::State focus) {
    QImage image(120, 40, QImage::Format_RGB32);
    image.fill(Qt::black);
    QStyleOptionButton option;
    option.rect = image.rect();
    option.state = QStyle::State_Enabled | focus;
    QPainter painter(&image);
    DialogStyle().drawControl(QStyle::CE_PushButton, &option, &painter, nullptr);
    return image;
  };
  EXPECT_NE(button(QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange),
            button(QStyle::State_None));
}

// Desktops offer a program only for the types that its entry declares.
TEST(DesktopEntryTypes, CoverEverySupportedFile) {
  MimeTypesQt mime;
  const FileTypes types(mime, {"/none/", "/none/", {}, "/k", ""});
  const std::string entry = DesktopEntryFor("/k", "");
  const std::string text = ReadTextFile(KV_DATA_FOLDER "/filesupport.dat");
  const FileTypeList list = types.Lines(text.substr(0, text.find('\n')));
  EXPECT_GT(list.lines.size(), 20U);
  for (const FileTypeLine& line : list.lines) {
    for (const std::string& type : line.types) {
      EXPECT_NE(entry.find(type + ';'), entry.npos) << type;
    }
  }
}

TEST(FactorySchemes, AreLegible) {
  using enum ColorSlot;
  using Pairs = std::vector<std::pair<ColorSlot, ColorSlot>>;
  const Pairs texts = {{kGeneralText, kGeneralBack},   {kGeneralText, kButtonBack},
                       {kPlaylistText, kPlaylistBack}, {kPlaylistPlaying, kPlaylistBack},
                       {kMenuText, kMenuBack},         {kMenuHighlightText, kMenuHighlight},
                       {kDisplayText, kDisplayBack},   {kFlashText, kDisplayBack},
                       {kFlashOn, kDisplayBack},       {kDisplayNumber, kDisplayBack}};
  // Lines, traces, what has the focus.
  const Pairs lines = {{kScrollerLine, kScrollerBack},
                       {kScrollerRange, kScrollerBack},
                       {kMenuHighlightBorder, kMenuBack},
                       {kMenuHighlightBorder, kGeneralBack},
                       {kMenuHighlightBorder, kPlaylistBack},
                       {kMeterText, kMeterBack},
                       {kMeterPeak, kMeterBack},
                       {kGraphTrace, kGraphBack},
                       {kGraphTrace, kGraphGrid}};
  for (const char* const name :
       {"default", "Daylight", "High contrast", "Fireside", "Moorland", "Nightfall"}) {
    const std::string path = std::string(KV_DATA_FOLDER "/colorscemes/") + name + ".dat";
    EXPECT_EQ(std::filesystem::file_size(path), 132U) << name;
    ColorTable colors{};
    ASSERT_TRUE(ReadColorFile(path, colors));
    const auto check = [&](const Pairs& pairs, double ratio) {
      for (const auto& [front, back] : pairs) {
        EXPECT_GE(ContrastRatio(ToQColor(ColorOf(colors, front), QPalette()),
                                ToQColor(ColorOf(colors, back), QPalette())),
                  ratio)
            << name << ": slot " << static_cast<int>(front) << " on " << static_cast<int>(back);
      }
    };
    check(texts, 4.5);  // WCAG 2, level AA
    check(lines, 3);
    check({{kScrollerRange, kScrollerLine}}, 2);
  }
}

TEST(DialogPalette, IsLegibleWhateverTheColours) {
  std::mt19937 random(1);
  for (int i = 0; i < 500; ++i) {
    ColorTable colors{};
    for (std::int32_t& color : colors) color = static_cast<std::int32_t>(random() & 0xFFFFFFU);
    if (i == 0) colors.fill(0x808080);
    for (const QPalette& palette :
         {DialogPalette(colors, QPalette()), ListPalette(colors, QPalette())}) {
      using enum QPalette::ColorRole;
      const std::tuple<QPalette::ColorRole, QPalette::ColorRole, double> pairs[] = {
          {WindowText, Window, 4.5},
          {ButtonText, Button, 4.5},
          {Text, Base, 4.5},
          {HighlightedText, Highlight, 4.5},
          {ToolTipText, ToolTipBase, 4.5},
          {BrightText, Window, 3.0}};
      for (const auto& [text, ground, ratio] : pairs) {
        EXPECT_GE(ContrastRatio(palette.color(text), palette.color(ground)), ratio) << text;
      }
    }
  }
}

TEST(Capture, TakesTheColourPassedOverLast) {
  QImage desktop(200, 200, QImage::Format_RGB32);
  desktop.setDevicePixelRatio(2);
  desktop.fill(QColor(1, 2, 3));
  desktop.setPixelColor(60, 40, QColor(0x10, 0x20, 0x30));
  for (const auto& [key, modifier] :
       {std::pair(Qt::Key_Shift, Qt::ShiftModifier), std::pair(Qt::Key_A, Qt::ControlModifier),
        std::pair(Qt::Key_Space, Qt::NoModifier)}) {
    const bool ends = key == Qt::Key_Space;
    std::int32_t taken = -2;
    auto* const form = new frmCapture(
        desktop, QRect(0, 0, 100, 100), [&taken](std::int32_t color) { taken = color; }, nullptr);
    form->Form_Load();
    QTest::mouseMove(form, QPoint(30, 20));
    QTest::keyClick(form, key, modifier);
    if (!ends) QTest::mouseClick(form, Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(taken, ends ? -1 : 0x302010);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST(Colors, ChoosesSchemesAndFollowsThem) {
  const TempFolder temp;
  const ProgramFolder folder({temp.Path("home"), "", "", "", KV_DATA_FOLDER});
  Settings settings;
  ReadSettings(KV_DATA_FOLDER "/config.dat", settings);
  ColorSchemes schemes(settings, folder);
  FakePump pump;
  WindowServicesQt windows(pump);
  int refreshes = 0;
  QPointer<frmColors> form;
  const auto refresh = [&] {
    ++refreshes;
    form->SetColors(settings.Colors);
  };
  form = new frmColors(schemes, settings.Colors, windows, refresh, nullptr);
  form->Form_Load();
  auto& box = *form->findChild<QComboBox*>(QStringLiteral("Combo1"));
  auto& list = *form->findChild<QTreeWidget*>(QStringLiteral("ColorList"));
  EXPECT_EQ(box.count(), 6);
  EXPECT_EQ(box.currentText(), QStringLiteral("Default"));
  const int line = box.findText(QStringLiteral("Daylight"));
  box.setFocus();
  box.setCurrentIndex(line);
  Q_EMIT box.activated(line);
  EXPECT_EQ(settings.ColorScheme, "Daylight.dat");
  EXPECT_EQ(refreshes, 1);
  EXPECT_EQ(list.topLevelItem(1)->text(1),
            form->palette().color(QPalette::Window).name().toUpper());
  // Nothing is written by mere choosing.
  form->Form_Unload();
  EXPECT_EQ(temp.Read("home/colorscemes/Daylight.dat"), "");
}

}  // namespace
}  // namespace kv
