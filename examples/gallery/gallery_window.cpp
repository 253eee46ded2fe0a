#include "gallery_window.h"

#include "controls/color_select.h"
#include "controls/file_copier_bar.h"
#include "controls/line3d.h"
#include "controls/scroller.h"
#include "controls/smart_button.h"
#include "controls/std_pictures.h"
#include "controls/trend_chart_widget.h"
#include "system/text_platform_qt.h"
#include "system/timers_qt.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace kv {
namespace {

constexpr int kMenu = 1;
constexpr int kMenuCheck = 2;
constexpr int kMenuPlain = 3;
constexpr int kCopyBlock = 64 * 1024;

QString Art(const char* name) {
  return QStringLiteral(GALLERY_ART "art/%1.svg").arg(QLatin1String(name));
}

// A copier with all that it needs.
class Copying : public QWidget {
 public:
  explicit Copying(Dialogs& dialogs, const QString& folder)
      : copier_({dialogs, text_, time_,
                 [this](std::function<void()> news) {
                   QMetaObject::invokeMethod(this, std::move(news), Qt::QueuedConnection);
                 }}),
        bar_(copier_, this) {
    auto* const row = new QHBoxLayout(this);
    auto* const start = new SmartButton(this);
    start->SetFace(Art("play"));
    start->SetLabel(QStringLiteral("Copy this program"));
    row->addWidget(&bar_, 1);
    row->addWidget(start);
    connect(start, &SmartButton::clicked, this, [this, folder] {
      copier_.xCopyFile("/proc/self/exe", (folder + QStringLiteral("/copy")).toStdString(),
                        kCopyBlock, true, [](CopyResult) {});
    });
    copier_.UpdateDisplay(43, "of a file");
  }

 private:
  TextPlatformQt text_;
  TimerSourceQt time_;
  FileCopier copier_;
  FileCopierBar bar_;
};

}  // namespace

GalleryWindow::GalleryWindow(TimerSource& time)
    : dialogs_(this),
      registry_(folder_.filePath(QStringLiteral("registry.ini")).toStdString()),
      feed_(probe_),
      menu_(
          *this, [](const std::string& file) { return StdPictureClass::GetIconFromFile(file); },
          this),
      pages_(new QTabWidget(this)),
      hot_key_(new QLabel(this)) {
  setWindowTitle(QStringLiteral("Gallery"));
  auto* const column = new QVBoxLayout(this);
  column->addWidget(pages_);
  column->addWidget(hot_key_);
  probe_.Initialize();
  AddChart(time);
  AddColors();
  AddLines();
  AddSliders();
  AddButtons();
  AddCopying();
}

void GalleryWindow::ShowHotKey(const std::string& state) {
  hot_key_->setText(QStringLiteral("Hot key: ") + QString::fromStdString(state));
}

QWidget* GalleryWindow::AddPage(const char* title, QWidget* control, PropertyPage* page) {
  auto* const whole = new QWidget(pages_);
  auto* const column = new QVBoxLayout(whole);
  column->addWidget(control);
  if (page != nullptr) {
    auto* const area = new QScrollArea(whole);
    area->setWidget(page);
    area->setWidgetResizable(true);
    column->addWidget(area, 1);
  } else {
    column->addStretch(1);
  }
  pages_->addTab(whole, QString::fromLatin1(title));
  return whole;
}

void GalleryWindow::AddChart(TimerSource& time) {
  auto* const chart = new TrendChart(time);
  chart->setMinimumHeight(chart->sizeHint().height() * 2);
  chart->setToolTip(QStringLiteral("Trend Chart2, version " GALLERY_VERSION));
  TrendChartProperties look;
  look.Automove = true;
  look.AutoupdateInterval = 100;
  look.DrawWidth = 2;
  look.BackColor = 0x251913;
  look.ForeColor = 0x5AA6F2;
  look.GridColor = 0x54402F;
  chart->Model().Update = [this](std::int32_t& value) { value = feed_.Next(); };
  chart->Model().LoadProperties(look);
  auto* const page = new PropertyPage;
  page->Add<TrendChartProperties>(
      kTrendChartFields, look,
      [chart](const TrendChartProperties& edited) { chart->Model().LoadProperties(edited); });
  AddPage("TrendChart", chart, page);
}

void GalleryWindow::AddColors() {
  auto* const chooser = new pucColorSelect(dialogs_, registry_);
  auto* const page = new PropertyPage;
  page->Add<ColorSelectProperties>(
      kColorSelectFields, chooser->Properties(),
      [chooser](const ColorSelectProperties& edited) { chooser->LoadProperties(edited); });
  AddPage("pucColorSelect", chooser, page);
}

void GalleryWindow::AddLines() {
  auto* const lines = new QWidget;
  auto* const row = new QHBoxLayout(lines);
  auto* const across = new line3d(lines);
  auto* const upright = new line3d(lines);
  upright->setMinimumHeight(40);
  upright->setFixedWidth(upright->sizeHint().width());
  across->setMinimumWidth(200);
  row->addWidget(across, 1);
  row->addWidget(upright);
  auto* const page = new PropertyPage;
  page->Add<Line3dProperties>(kLine3dFields, across->Properties(),
                              [across, upright](const Line3dProperties& edited) {
                                across->LoadProperties(edited);
                                upright->LoadProperties(edited);
                              });
  AddPage("line3d", lines, page);
}

void GalleryWindow::AddSliders() {
  auto* const sliders = new QWidget;
  auto* const row = new QHBoxLayout(sliders);
  auto* const across = new Scroller(sliders);
  auto* const upright = new Scroller(sliders);
  upright->Model().SetDirection(ScrollerDirection::kVertical);
  upright->setMinimumHeight(120);
  for (Scroller* slider : {across, upright}) {
    slider->Model().SetMax(100);
    slider->Model().SetValue(40);
    slider->Model().SetRangeStart(20);
    slider->Model().SetRangeEnd(60);
    row->addWidget(slider);
  }
  AddPage("Scroller", sliders, nullptr);
}

void GalleryWindow::AddButtons() {
  auto* const buttons = new QWidget;
  auto* const row = new QHBoxLayout(buttons);
  for (const char* const face : {"play", "pause", "stop", "menu"}) {
    auto* const button = new SmartButton(buttons);
    button->SetFace(Art(face));
    button->SetLabel(QString::fromLatin1(face));
    row->addWidget(button);
    connect(button, &SmartButton::clicked, this, [this] { menu_.PopUp(kMenu, QCursor::pos()); });
  }
  row->addStretch(1);
  menu_.SetColors({.background = palette().color(QPalette::Window),
                   .text = palette().color(QPalette::WindowText),
                   .separator = palette().color(QPalette::Mid),
                   .highlight = palette().color(QPalette::Highlight),
                   .highlight_border = palette().color(QPalette::Highlight),
                   .highlight_text = palette().color(QPalette::HighlightedText),
                   .disabled_text = palette().color(QPalette::Mid)});
  AddPage("SmartButton, SmartMenu", buttons, nullptr);
}

void GalleryWindow::AddCopying() {
  AddPage("FileCopier", new Copying(dialogs_, folder_.path()), nullptr);
}

std::vector<SmartMenuItem> GalleryWindow::MenuItems() const {
  using Type = SmartMenuItem::Type;
  return {{.id = kMenu, .caption = QStringLiteral("Menu")},
          {.id = kMenuCheck,
           .parent = kMenu,
           .type = Type::kCheck,
           .caption = QStringLiteral("A check mark"),
           .checked = menu_checked_},
          {.id = kMenuPlain,
           .parent = kMenu,
           .caption = QStringLiteral("An entry"),
           .accelerator = QStringLiteral("Ctrl+E"),
           .icon = GALLERY_ART "icons/about.ico"}};
}

void GalleryWindow::SetMenuItemChecked(int /*id*/, bool checked) {
  menu_checked_ = checked;
}

}  // namespace kv
