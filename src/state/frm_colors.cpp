#include "state/frm_colors.h"

#include "controls/color_qt.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr int kMargin = 14;
constexpr int kSpacing = 8;
constexpr int kNameWidth = 56;  // of the box for a name, in characters
constexpr int kSlotRole = Qt::UserRole;

// The entries of the menu by their ids.
constexpr int kColoeMenu = 1;
constexpr int kChangeColors = 2;
constexpr int kSeparator = 3;
constexpr int kCaptureColor = 4;

QPixmap Swatch(const QColor& color, const QColor& edge, int height, qreal ratio) {
  const QSize size(height * 3 / 2, height);
  QPixmap pixmap(size * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(edge);
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF(QPointF(0, 0), size).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  return pixmap;
}

// A swatch keeps its colours where the line is selected, too.
QIcon SwatchIcon(const QPixmap& pixmap) {
  QIcon icon;
  for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected, QIcon::Disabled}) {
    icon.addPixmap(pixmap, mode);
  }
  return icon;
}

}  // namespace

frmColors::frmColors(ColorSchemes& schemes, ColorTable& colors, WindowServicesQt& windows,
                     std::function<void()> refresh, QWidget* owner)
    : QWidget(owner, Qt::Dialog | Qt::WindowCloseButtonHint),
      schemes_(schemes),
      colors_(colors),
      refresh_(std::move(refresh)),
      dialogs_(this),
      editor_(*this, schemes, colors, dialogs_),
      desktop_(windows, *this),
      MENU_(*this, {}, this),
      Combo1_(new QComboBox(this)),
      ColorList_(new QTreeWidget(this)),
      Command1_(new QPushButton(QTr("&New..."), this)),
      Command2_(new QPushButton(QTr("&Rename..."), this)),
      Command3_(new QPushButton(QTr("&Delete"), this)),
      Command4_(new QPushButton(QTr("&Close"), this)),
      change_(new QPushButton(QTr("Change c&olor(s)..."), this)),
      capture_(new QPushButton(QTr("Ca&pture color..."), this)) {
  setObjectName(QStringLiteral("frmColors"));
  setWindowTitle(QTr("ColorChanger - Kestrelview"));
  LayOut();
  BuildMenu();
  FillColorList();
  style_.ApplyTo(*this);
  SetColors(colors_);
  FillCombo1();

  connect(Combo1_, &QComboBox::activated, this, &frmColors::Combo1_Click);
  connect(Command1_, &QPushButton::clicked, this, [this] { Ask([this] { editor_.NewScheme(); }); });
  connect(Command2_, &QPushButton::clicked, this,
          [this] { Ask([this] { editor_.RenameScheme(); }); });
  connect(Command3_, &QPushButton::clicked, this,
          [this] { Ask([this] { editor_.DeleteScheme(); }); });
  connect(Command4_, &QPushButton::clicked, this, &frmColors::close);
  connect(change_, &QPushButton::clicked, this, &frmColors::ChangeColors);
  connect(capture_, &QPushButton::clicked, this, &frmColors::CaptureColor);
  connect(ColorList_, &QTreeWidget::itemActivated, this, &frmColors::ChangeColors);
  connect(ColorList_, &QTreeWidget::itemSelectionChanged, this, &frmColors::SelectionChanged);
  connect(ColorList_, &QTreeWidget::customContextMenuRequested, this,
          [this](QPoint point) { ColorList_Menu(ColorList_->viewport()->mapToGlobal(point)); });
}

frmColors::~frmColors() = default;

void frmColors::LayOut() {
  Combo1_->setObjectName(QStringLiteral("Combo1"));
  ColorList_->setObjectName(QStringLiteral("ColorList"));
  const std::pair<QPushButton*, const char*> buttons[] = {
      {Command1_, "Command1"}, {Command2_, "Command2"}, {Command3_, "Command3"},
      {Command4_, "Command4"}, {change_, "change"},     {capture_, "capture"}};
  for (const auto& [button, name] : buttons) {
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
  }

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  rows->setSpacing(kSpacing);
  auto* const scheme = new QLabel(QTr("Color &scheme:"), this);
  scheme->setBuddy(Combo1_);
  rows->addWidget(scheme);
  auto* const head = new QHBoxLayout;
  Combo1_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  head->addWidget(Combo1_, 1);
  head->addWidget(Command1_);
  head->addWidget(Command2_);
  head->addWidget(Command3_);
  rows->addLayout(head);
  rows->addSpacing(kSpacing);

  auto* const list = new QLabel(QTr("Co&lors:"), this);
  list->setBuddy(ColorList_);
  rows->addWidget(list);
  ColorList_->setAccessibleName(QTr("Colors"));
  ColorList_->setColumnCount(2);
  ColorList_->setHeaderHidden(true);
  ColorList_->setRootIsDecorated(false);
  ColorList_->setUniformRowHeights(true);
  ColorList_->setAllColumnsShowFocus(true);
  ColorList_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  ColorList_->setContextMenuPolicy(Qt::CustomContextMenu);
  ColorList_->header()->setStretchLastSection(false);
  ColorList_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  ColorList_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  rows->addWidget(ColorList_, 1);

  auto* const foot = new QHBoxLayout;
  foot->addWidget(change_);
  foot->addWidget(capture_);
  foot->addStretch(1);
  foot->addWidget(Command4_);
  rows->addLayout(foot);
  SelectionChanged();
}

void frmColors::FillColorList() {
  for (const ColorSlotRow& row : kColorSlotRows) {
    auto* const item = new QTreeWidgetItem(ColorList_);
    item->setText(0, QTr(row.label));
    item->setToolTip(0, QTr(row.colors));
    item->setData(0, kSlotRole, static_cast<int>(row.slot));
  }
}

void frmColors::Form_Load() {
  const int line = fontMetrics().height();
  const QSize room = screen()->availableSize() * 9 / 10;
  resize(sizeHint().expandedTo(QSize(32 * line, 34 * line)).boundedTo(room));
  show();
  ColorList_->setFocus();
}

void frmColors::SetColors(const ColorTable& colors) {
  setPalette(DialogPalette(colors, QPalette()));
  ColorList_->setPalette(ListPalette(colors, QPalette()));
  const auto color = [&colors](ColorSlot slot) {
    return ToQColor(ColorOf(colors, slot), QPalette());
  };
  MENU_.SetColors({color(ColorSlot::kMenuBack), color(ColorSlot::kMenuText),
                   color(ColorSlot::kMenuSeparator), color(ColorSlot::kMenuHighlight),
                   color(ColorSlot::kMenuHighlightBorder), color(ColorSlot::kMenuHighlightText),
                   color(ColorSlot::kMenuText)});
  const QPalette palette = ColorList_->palette();
  const QColor edge = Blend(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.6);
  const int height = fontMetrics().height();
  ColorList_->setIconSize(QSize(height * 3 / 2, height));
  for (int i = 0; i < ColorList_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* const item = ColorList_->topLevelItem(i);
    const QColor own = color(static_cast<ColorSlot>(item->data(0, kSlotRole).toInt()));
    item->setIcon(0, SwatchIcon(Swatch(own, edge, height, devicePixelRatioF())));
    item->setText(1, own.name().toUpper());
  }
}

void frmColors::SchemesChanged() {
  FillCombo1();
}

void frmColors::FillCombo1() {
  const QSignalBlocker quiet(Combo1_);
  names_ = schemes_.Names();
  Combo1_->clear();
  for (const std::string& name : names_) {
    Combo1_->addItem(name == kDefaultScheme ? QTr("Default") : ToQString(name));
  }
  const auto current = std::find(names_.begin(), names_.end(), schemes_.Current());
  Combo1_->setCurrentIndex(current == names_.end() ? -1
                                                   : static_cast<int>(current - names_.begin()));
}

void frmColors::Combo1_Click(int index) {
  if (index < 0 || index >= static_cast<int>(names_.size())) return;
  const std::string name = names_[static_cast<std::size_t>(index)];
  editor_.SelectScheme(name);
}

void frmColors::RefreshColors() {
  refresh_();
}

// --- The colours that are selected

std::vector<ColorSlot> frmColors::Selected() const {
  std::vector<ColorSlot> slots;
  for (const QTreeWidgetItem* const item : ColorList_->selectedItems()) {
    slots.push_back(static_cast<ColorSlot>(item->data(0, kSlotRole).toInt()));
  }
  return slots;
}

void frmColors::SelectionChanged() {
  const bool any = !ColorList_->selectedItems().isEmpty();
  change_->setEnabled(any);
  capture_->setEnabled(any);
}

void frmColors::ChangeColors() {
  Ask([this] { editor_.ChangeColors(Selected()); });
}

void frmColors::CaptureColor() {
  const std::vector<ColorSlot> slots = Selected();
  if (slots.empty()) return;
  desktop_.Pick(
      [this, slots](std::int32_t color) {
        if (color >= 0 && !unloaded_) Ask([&] { editor_.SetColors(slots, color); });
      },
      [this] {
        Ask([this] {
          dialogs_.ShowMessageBox({Tr("This desktop does not let a program read the colors of the "
                                      "screen, and offers no color picker of its own."),
                                   BoxIcon::kInformation,
                                   BoxButtons::kOk,
                                   {}});
        });
      });
}

// --- The menu

void frmColors::BuildMenu() {
  MENU_.on_click = [this](int id) { MENU_Click(id); };
}

std::vector<SmartMenuItem> frmColors::MenuItems() const {
  const auto item = [](int id, const char* caption) {
    SmartMenuItem result;
    result.id = id;
    result.parent = id == kColoeMenu ? 0 : kColoeMenu;
    result.caption = QTr(caption);
    if (id == kSeparator) result.type = SmartMenuItem::Type::kSeparator;
    return result;
  };
  return {item(kColoeMenu, TrLater("ColoeMenu")), item(kChangeColors, TrLater("Change color(s)")),
          item(kSeparator, ""),
          item(kCaptureColor, TrLater("Color capture for selected color(s)"))};
}

void frmColors::ColorList_Menu(QPoint global) {
  if (Selected().empty()) return;
  Ask([this, global] { MENU_.PopUp(kColoeMenu, global); });
}

void frmColors::MENU_Click(int id) {
  // The menu must be off the screen before that is captured, which desktops do with an effect.
  constexpr int kMenuGone = 300;  // milliseconds
  QTimer::singleShot(id == kCaptureColor ? kMenuGone : 0, this, [this, id] {
    if (id == kChangeColors) ChangeColors();
    if (id == kCaptureColor) CaptureColor();
  });
}

// --- Questions, and the end

void frmColors::Ask(const std::function<void()>& work) {
  if (unloaded_) return;
  ++busy_;
  work();
  --busy_;
  if (unloaded_ && busy_ == 0) deleteLater();
}

std::optional<std::string> frmColors::InputBox(const std::string& prompt, const std::string& title,
                                               const std::string& text) {
  const QPointer<QInputDialog> box(new QInputDialog(this));
  box->setWindowTitle(ToQString(title));
  box->setLabelText(ToQString(prompt));
  box->setTextValue(ToQString(text));
  box->setPalette(palette());
  style_.ApplyTo(*box);
  for (QPushButton* const button : box->findChildren<QPushButton*>()) button->setIcon(QIcon());
  box->resize(fontMetrics().averageCharWidth() * kNameWidth, box->sizeHint().height());
  const bool accepted = box->exec() == QDialog::Accepted && box != nullptr;
  std::optional<std::string> answer;
  if (accepted) answer = FromQString(box->textValue());
  delete box.data();
  return answer;
}

void frmColors::closeEvent(QCloseEvent* event) {
  event->accept();
  if (unloaded_) return;
  unloaded_ = true;
  desktop_.Close();
  MENU_.Close();
  for (QDialog* const question : findChildren<QDialog*>()) question->reject();
  hide();
  if (busy_ == 0) deleteLater();
}

void frmColors::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace kv
