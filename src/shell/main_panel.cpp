#include "shell/main_panel.h"

#include "controls/color_qt.h"
#include "controls/svg_face_qt.h"
#include "shell/panel_accessible_qt.h"
#include "shell/spoken_values.h"
#include "system/translation_qt.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>

#include <algorithm>

namespace kv {
namespace {

// From top to bottom; the strips fill the panel's height.
constexpr int kLineHeight = 2;
constexpr int kSliderTop = 3;
constexpr int kSliderHeight = 21;
constexpr int kDisplayTop = 26;
constexpr int kDisplayHeight = 66;
constexpr int kTimeTop = kDisplayTop + kDisplayHeight;
constexpr int kTimeHeight = 18;
constexpr int kBottomTop = kTimeTop + kTimeHeight + kLineHeight;
constexpr int kBottomHeight = MainPanel::kFullHeight - kBottomTop;

constexpr int kMargin = 8;
constexpr int kTitlePixels = 15;
constexpr int kDataPixels = 11;
constexpr int kTitleHeight = 24;
constexpr int kDataHeight = 17;
constexpr int kSmallControlsWidth = 244;
constexpr int kSmallRow = 21;
constexpr int kIndicator = 16;
constexpr int kHandSize = 32;
constexpr int kHandTipX = 12;
constexpr int kHandTipY = 2;
constexpr int kCounterWidth = 84;

// Colour slots.
constexpr std::size_t kButtonBack = 0;
constexpr std::size_t kGeneralBack = 1;
constexpr std::size_t kGeneralText = 4;
constexpr std::size_t kSeparator1 = 5;
constexpr std::size_t kSeparator2 = 6;
constexpr std::size_t kScrollerBack = 8;
constexpr std::size_t kScrollerLine = 9;
constexpr std::size_t kScrollerRange = 18;
constexpr std::size_t kDisplayBack = 22;
constexpr std::size_t kDisplayText = 23;
constexpr std::size_t kDisplayCounter = 29;

struct ButtonPlace {
  int index;
  int gap_before;  // pixels
  const char* face;
  const char* label;
};

// From left to right, in groups.
constexpr std::array<ButtonPlace, kButtons> kButtonPlaces = {{
    {0, 0, "play", TrLater("Play")},
    {1, 0, "pause", TrLater("Pause")},
    {2, 0, "stop", TrLater("Stop")},
    {8, 10, "first", TrLater("First")},
    {3, 0, "previous", TrLater("Previous")},
    {4, 0, "next", TrLater("Next")},
    {9, 0, "last", TrLater("Last")},
    {5, 10, "ab_0", TrLater("A > B")},
    {6, 0, "repeat_0", TrLater("Repeat")},
    {10, 10, "playlist", TrLater("Playlist")},
    {11, 0, "cycle", TrLater("Cycle plugins")},
    {7, 0, "menu", TrLater("Menu")},
}};

struct SmallSlider {
  SliderKind kind;
  const char* face;
  const char* name;  // for who cannot see the face
  int x;             // of the face; slider and value follow it
  int row;
  int slider_width;
  int label_width;
};

constexpr std::array<SmallSlider, 3> kSmallSliders = {{
    {SliderKind::kVolume, "volume", TrLater("Volume"), 6, 0, 182, 28},
    {SliderKind::kRate, "rate", TrLater("Speed"), 6, 1, 64, 28},
    {SliderKind::kBalance, "balance", TrLater("Balance"), 124, 1, 60, 30},
}};

void Paint(QWidget* widget, const QColor& back, const QColor& text) {
  QPalette palette = widget->palette();
  palette.setColor(QPalette::Window, back);
  palette.setColor(QPalette::WindowText, text);
  widget->setPalette(palette);
  widget->setAutoFillBackground(true);
}

// The name of a file and the tags in it are no markup, whatever they look like.
QString PlainToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

}  // namespace

MainPanel::MainPanel(ArtFile art, MessagePump& pump, QWidget* parent)
    : QWidget(parent), art_(std::move(art)) {
  InstallPanelAccessibility();
  setAccessibleName(QTr("Controls"));
  for (line3d*& line : sLine_) line = new line3d(this);
  auto* position = new Scroller(this, &pump);
  position->setAccessibleName(QTr("Position"));
  sliders_[0] = position;

  display_ = new QWidget(this);
  disp_[5] = MakeDisp(5, QTr("Title"), kTitlePixels, true);
  disp_[1] = MakeDisp(1, QTr("Medium"), kDataPixels, false);
  disp_[2] = MakeDisp(2, QTr("Details"), kDataPixels, false);
  ic_https_ = new QLabel(display_);
  pic_kvr_ = new QLabel(display_);
  ic_https_->hide();
  pic_kvr_->hide();
  ic_https_->setToolTip(QTr("Internet connection"));
  ic_https_->setAccessibleName(ic_https_->toolTip());
  pic_kvr_->setToolTip(QTr("Resume file"));
  pic_kvr_->setAccessibleName(pic_kvr_->toolTip());
  MakeSmallSliders(pump);

  pic_time_ = new TimeStrip(this);
  pic_time_->setAccessibleName(QTr("Time"));
  disp_[0] = MakeDisp(0, QTr("Number in the list"), kDataPixels, false);
  disp_[0]->setParent(pic_time_);
  disp_[0]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  pic_time_->installEventFilter(this);
  display_->installEventFilter(this);

  MakeButtons();
  MakeKeys();
  MakeSpeech();
}

DisplayLine* MainPanel::MakeDisp(int index, const QString& name, int pixels, bool bold) {
  auto* label = new DisplayLine(display_);
  label->setAccessibleName(name);
  label->on_press = [this, index] {
    if (on_disp_click) on_disp_click(index);
  };
  QFont font = label->font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  label->setFont(font);
  label->setProperty("index", index);
  label->setMouseTracking(true);
  label->installEventFilter(this);
  return label;
}

void MainPanel::MakeSmallSliders(MessagePump& pump) {
  small_controls_ = new QWidget(display_);
  for (const SmallSlider& row : kSmallSliders) {
    const auto at = static_cast<std::size_t>(row.kind);
    sliders_[at] = new Scroller(small_controls_, &pump);
    sliders_[at]->setAccessibleName(QTr(row.name));
    slider_faces_[at] = new QLabel(small_controls_);
    slider_labels_[at] = new DisplayLine(small_controls_);
    slider_labels_[at]->setAccessibleName(QTr(row.name));
    slider_labels_[at]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont font = slider_labels_[at]->font();
    font.setPixelSize(kDataPixels);
    slider_labels_[at]->setFont(font);
    slider_faces_[at]->setToolTip(QTr(row.name));
    slider_faces_[at]->setAccessibleName(slider_faces_[at]->toolTip());
  }
}

void MainPanel::MakeButtons() {
  bottom_ = new QWidget(this);
  bottom_->installEventFilter(this);
  line3d1_ = new line3d(bottom_);
  line3d1_->hide();
  for (const ButtonPlace& place : kButtonPlaces) {
    auto* button = new SmartButton(bottom_);
    button->SetLabel(QTr(place.label));
    button->SetFace(art_(place.face));
    buttons_[static_cast<std::size_t>(place.index)] = button;
  }
}

// Only what is drawn as a target of the keyboard takes the focus, and only from Tab: a click leaves
// it where it is. The position hands it back at once, so that Tab would never come past it.
void MainPanel::MakeKeys() {
  keys_ = new PanelKeys(*this, *parentWidget());
  Slider(SliderKind::kPosition).setFocusPolicy(Qt::ClickFocus);
  for (const SmallSlider& row : kSmallSliders) {
    Slider(row.kind).setFocusPolicy(Qt::TabFocus);
    keys_->Add(Slider(row.kind));
  }
  for (DisplayLine* label : disp_) {
    if (label != nullptr) keys_->Add(*label);
  }
  for (SmartButton* button : buttons_) {
    button->setFocusPolicy(Qt::TabFocus);
    keys_->Add(*button);
  }
}

void MainPanel::MakeSpeech() {
  const auto speak = [this](SliderKind kind, std::string (*words)(double value)) {
    Slider(kind).spoken = [words](double value) { return ToQString(words(value)); };
  };
  speak(SliderKind::kVolume, SpokenVolume);
  speak(SliderKind::kRate, SpokenRate);
  speak(SliderKind::kBalance, SpokenBalance);
  Slider(SliderKind::kPosition).spoken = [this](double value) {
    return ToQString(SpokenPosition(value, Slider(SliderKind::kPosition).Model().Max()));
  };
}

void MainPanel::resizeEvent(QResizeEvent* /*event*/) {
  LayOut();
}

void MainPanel::LayOut() {
  const int width = this->width();
  sLine_[0]->setGeometry(0, 0, width, kLineHeight);
  sLine_[1]->setGeometry(0, kDisplayTop - kLineHeight, width, kLineHeight);
  sLine_[2]->setGeometry(0, kBottomTop - kLineHeight, width, kLineHeight);
  Slider(SliderKind::kPosition).setGeometry(0, kSliderTop, width - 1, kSliderHeight);

  display_->setGeometry(0, kDisplayTop, width, kDisplayHeight);
  // The title has the whole width; below it data on the left and the small sliders on the right.
  const int below = kDisplayHeight - kTitleHeight;
  small_controls_->setGeometry(width - kSmallControlsWidth, kTitleHeight, kSmallControlsWidth,
                               below);
  const int data_width = std::max(0, width - kSmallControlsWidth - kIndicator - 2 * kMargin);
  disp_[5]->setGeometry(kMargin, 2, width - 2 * kMargin, kTitleHeight - 2);
  disp_[1]->setGeometry(kMargin, kTitleHeight + 2, data_width, kDataHeight);
  disp_[2]->setGeometry(kMargin, kTitleHeight + 2 + kDataHeight, data_width, kDataHeight);
  ElideDisp(1);
  ElideDisp(2);
  const QRect corner(width - kSmallControlsWidth - kIndicator - 4, kDisplayHeight - kIndicator - 4,
                     kIndicator, kIndicator);
  ic_https_->setGeometry(corner);
  pic_kvr_->setGeometry(corner);

  for (const SmallSlider& place : kSmallSliders) {
    const auto at = static_cast<std::size_t>(place.kind);
    const int y = place.row * kSmallRow;
    const int slider_x = place.x + kIndicator + 4;
    slider_faces_[at]->setGeometry(place.x, y + 3, kIndicator, kIndicator);
    sliders_[at]->setGeometry(slider_x, y, place.slider_width, kSmallRow);
    slider_labels_[at]->setGeometry(slider_x + place.slider_width, y, place.label_width, kSmallRow);
  }

  pic_time_->setGeometry(0, kTimeTop, width, kTimeHeight);
  disp_[0]->setGeometry(width - kCounterWidth - kMargin, 0, kCounterWidth, kTimeHeight);

  bottom_->setGeometry(0, kBottomTop, width, kBottomHeight);
  int x = 3;
  for (const ButtonPlace& place : kButtonPlaces) {
    SmartButton& button = Button(place.index);
    x += place.gap_before;
    const QSize size = button.sizeHint();
    button.setGeometry(x, (kBottomHeight - size.height()) / 2, size.width(), size.height());
    x += size.width();
  }
  constexpr int kGraphMargin = 3;
  line3d1_->setGeometry(x + kGraphMargin, kGraphMargin, kLineHeight,
                        kBottomHeight - 2 * kGraphMargin);
  if (graph_ == nullptr) return;
  const int left = x + 3 * kGraphMargin;
  graph_->setGeometry(left, kGraphMargin, std::max(0, width - left - kGraphMargin),
                      kBottomHeight - 2 * kGraphMargin);
}

void MainPanel::PictureComes() {
  pic_time_->PictureComes();
  Slider(SliderKind::kPosition).PictureComes();
}

void MainPanel::SetGraph(QWidget& graph) {
  graph_ = &graph;
  LayOut();
}

void MainPanel::SetGraphVisible(bool visible) {
  line3d1_->setVisible(visible);
}

void MainPanel::SetDisp(int index, const QString& text) {
  DisplayLine* label = index >= 0 && index < 6 ? disp_[static_cast<std::size_t>(index)] : nullptr;
  if (label == nullptr) return;
  // A file's name may hold anything; a label has one line.
  QString line = text;
  for (QChar& c : line) {
    if (c.category() == QChar::Other_Control) c = QChar::Space;
  }
  disp_texts_[static_cast<std::size_t>(index)] = line;
  label->SetFullText(line);
  ElideDisp(index);
}

// The lines of data lose their end where they do not fit; the title is fitted by whoever sets it.
void MainPanel::ElideDisp(int index) {
  QLabel* label = disp_[static_cast<std::size_t>(index)];
  const QString& text = disp_texts_[static_cast<std::size_t>(index)];
  const bool data_line = index == 1 || index == 2;
  const QString shown =
      data_line ? label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()) : text;
  if (label->text() != shown) label->setText(shown);
  if (data_line) label->setToolTip(shown != text ? PlainToolTip(text) : QString());
}

void MainPanel::SetDispUnderline(int index, bool underline) {
  DisplayLine* label = index >= 0 && index < 6 ? disp_[static_cast<std::size_t>(index)] : nullptr;
  if (label == nullptr) return;
  label->SetLink(underline);
  QFont font = label->font();
  font.setUnderline(underline);
  label->setFont(font);
}

void MainPanel::SetTitleToolTip(const QString& text) {
  disp_[5]->setToolTip(PlainToolTip(text));
}

void MainPanel::SetDispPointer(int index, bool hand) {
  DisplayLine* label = index >= 0 && index < 6 ? disp_[static_cast<std::size_t>(index)] : nullptr;
  if (label == nullptr) return;
  if (!hand) {
    label->unsetCursor();
    return;
  }
  const double ratio = devicePixelRatioF();
  const QPixmap picture = RenderFace(art_("hand"), QColor(), QSize(kHandSize, kHandSize), ratio);
  label->setCursor(picture.isNull() ? QCursor(Qt::PointingHandCursor)
                                    : QCursor(picture, kHandTipX, kHandTipY));
}

void MainPanel::SetSliderLabel(SliderKind kind, const QString& text) {
  DisplayLine* label = slider_labels_[static_cast<std::size_t>(kind)];
  if (label == nullptr) return;
  label->setText(text);
  label->SetFullText(text);
}

void MainPanel::ShowConnection(const char* drawing) {
  connection_ = drawing != nullptr ? QString::fromLatin1(drawing) : QString();
  ic_https_->setVisible(!connection_.isEmpty());
  if (connection_.isEmpty()) return;
  ic_https_->setPixmap(RenderFace(art_(connection_.toLatin1().constData()), display_ink_,
                                  QSize(kIndicator, kIndicator), devicePixelRatioF()));
}

void MainPanel::ShowResumeMark(bool visible) {
  pic_kvr_->setVisible(visible);
}

void MainPanel::SetFace(int button, const char* drawing) {
  Button(button).SetFace(art_(drawing));
}

void MainPanel::ApplyColors(const std::array<std::int32_t, kColorSlots>& colors) {
  const auto slot = [&](std::size_t index) { return ToQColor(colors[index], palette()); };
  Paint(this, slot(kGeneralBack), slot(kGeneralText));
  Paint(bottom_, slot(kGeneralBack), slot(kGeneralText));
  Paint(display_, slot(kDisplayBack), slot(kDisplayText));
  Paint(small_controls_, slot(kGeneralBack), slot(kGeneralText));
  pic_time_->SetColors(slot(kDisplayBack), slot(kDisplayText));
  for (DisplayLine* label : disp_) {
    if (label != nullptr) Paint(label, slot(kDisplayBack), slot(kDisplayText));
  }
  Paint(disp_[0], slot(kDisplayBack), slot(kDisplayCounter));
  for (SmartButton* button : buttons_) button->SetColors(slot(kButtonBack), slot(kGeneralText));
  for (line3d* line : sLine_) line->SetColors(slot(kSeparator1), slot(kSeparator2));
  line3d1_->SetColors(slot(kSeparator1), slot(kSeparator2));
  for (Scroller* slider : sliders_) {
    slider->Model().SetBackColor(colors[kScrollerBack]);
    slider->Model().SetCenterLineColor(colors[kScrollerLine]);
    slider->Model().SetRangeColor(colors[kScrollerRange]);
  }
  display_ink_ = slot(kDisplayText);
  const QSize size(kIndicator, kIndicator);
  for (const SmallSlider& row : kSmallSliders) {
    slider_faces_[static_cast<std::size_t>(row.kind)]->setPixmap(
        RenderFace(art_(row.face), slot(kGeneralText), size, devicePixelRatioF()));
  }
  pic_kvr_->setPixmap(RenderFace(art_("resume"), display_ink_, size, devicePixelRatioF()));
  if (!connection_.isEmpty()) ShowConnection(connection_.toLatin1().constData());
}

int MainPanel::TitleWidth(const QString& text) const {
  return disp_[5]->fontMetrics().horizontalAdvance(text);
}

int MainPanel::TitleLeft() const {
  return disp_[5]->x();
}

int MainPanel::PathWidth() const {
  return display_->width() - 10 - small_controls_->width();
}

void MainPanel::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), palette().window());
}

void MainPanel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton && on_menu) on_menu();
}

bool MainPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseMove && on_disp_move) {
    const QVariant index = watched->property("index");
    if (index.isValid()) on_disp_move(index.toInt());
  }
  if (event->type() == QEvent::MouseButtonRelease) {
    auto* mouse = static_cast<QMouseEvent*>(event);
    const QVariant index = watched->property("index");
    if (mouse->button() == Qt::RightButton && index.isValid() && on_disp_mouse_down) {
      on_disp_mouse_down();
      return true;
    }
    if (mouse->button() == Qt::RightButton && on_menu) {
      on_menu();
      return true;
    }
    if (mouse->button() == Qt::LeftButton && index.isValid() && on_disp_click) {
      on_disp_click(index.toInt());
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kv
