#include "state/frm_settings.h"

#include "controls/color_qt.h"
#include "controls/scroller.h"
#include "state/color_slots.h"
#include "state/wrapped_button_qt.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr int kMargin = 16;
constexpr int kSpacing = 6;
constexpr int kIndent = 24;  // of what depends on the control above it
constexpr int kGroupGap = 14;

QLabel* Text(const QString& text, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

frmSettings::frmSettings(Settings& settings, FileTypes& types, const std::string& patterns,
                         std::function<void()> refresh_icons, QWidget* parent)
    : QDialog(parent),
      settings_(settings),
      types_(types),
      type_list_(types.Lines(patterns)),
      refresh_icons_(std::move(refresh_icons)) {
  setObjectName(QStringLiteral("frmSettings"));
  setWindowTitle(QTr("Options - Kestrelview"));
  setModal(true);

  BuildPages();
  for (const Bound& bound : bound_) {
    ShowSetting(bound);
    Follow(bound);
  }
  style_.ApplyTo(*this);
  SetColors(settings_.Colors);
  Size();
}

frmSettings::~frmSettings() = default;

// --- Building

void frmSettings::BuildPages() {
  auto* const whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, kMargin);
  whole->setSpacing(kMargin);
  auto* const tabs = new QTabWidget(this);
  tabs->setObjectName(QStringLiteral("SSTab1"));
  tabs->setDocumentMode(true);
  whole->addWidget(tabs, 1);
  for (const OptionPageRow& page : kOptionPages) {
    QBoxLayout& layout = *AddPage(*tabs, page);
    std::string_view group;
    for (const OptionRow& row : OptionRows()) {
      if (row.page != page.page) continue;
      if (row.group != group) AddHeading(layout, Tr(row.group));
      group = row.group;
      bound_.push_back({&row, AddControl(layout, row)});
      AddNotes(layout, row);
    }
    if (page.page == OptionPage::kFileTypes) {
      AddFileTypes(layout);
    } else {
      layout.addStretch(1);
    }
  }

  auto* const foot = new QHBoxLayout;
  foot->setContentsMargins(kMargin, 0, kMargin, 0);
  const auto button = [this, foot](const char* name, const char* caption) {
    auto* const result = new QPushButton(QTr(caption), this);
    result->setObjectName(QLatin1String(name));
    result->setAutoDefault(false);
    foot->addWidget(result);
    return result;
  };
  connect(button("Command3", TrLater("Color setup...")), &QPushButton::clicked, this,
          &frmSettings::Command3_Click);
  foot->addStretch(1);
  QPushButton* const ok = button("Command1", TrLater("&OK"));
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &frmSettings::Command1_Click);
  connect(button("Command2", TrLater("&Cancel")), &QPushButton::clicked, this, &QDialog::reject);
  whole->addLayout(foot);
  tabs->tabBar()->setFocus();
}

QBoxLayout* frmSettings::AddPage(QTabWidget& tabs, const OptionPageRow& page) {
  // What does not fit, on a small screen or in a large font, is scrolled to.
  auto* const area = new QScrollArea(&tabs);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  auto* const content = new QWidget(area);
  content->setObjectName(QStringLiteral("page"));
  content->setAutoFillBackground(false);
  area->viewport()->setAutoFillBackground(false);
  auto* const layout = new QVBoxLayout(content);
  layout->setContentsMargins(kMargin, kMargin, kMargin, 0);
  layout->setSpacing(kSpacing);
  area->setWidget(content);
  tabs.addTab(area, QTr(page.title));
  pages_.push_back(content);
  return layout;
}

void frmSettings::AddHeading(QBoxLayout& page, std::string_view text) {
  if (page.count() > 0) page.addSpacing(kGroupGap);
  QLabel* const heading = Text(ToQString(text), page.parentWidget());
  QFont font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  page.addWidget(heading);
}

QWidget* frmSettings::AddControl(QBoxLayout& page, const OptionRow& row) {
  QWidget* const parent = page.parentWidget();
  QWidget* widget = nullptr;
  switch (row.kind) {
    case OptionKind::kCheck:
    case OptionKind::kOffCheck:
      widget = new Wrapped<QCheckBox>(QTr(row.caption), parent);
      break;
    case OptionKind::kChoice:
      widget = new Wrapped<QRadioButton>(QTr(row.caption), parent);
      break;
    case OptionKind::kIndexList:
    case OptionKind::kValueList:
      return AddList(page, row);
    case OptionKind::kSlider:
      return AddSlider(page, row);
  }
  widget->setObjectName(ToQString(row.control));
  if (row.depends_on.empty()) {
    page.addWidget(widget);
  } else {
    auto* const line = new QHBoxLayout;
    line->addSpacing(kIndent);
    line->addWidget(widget);
    page.addLayout(line);
  }
  return widget;
}

QWidget* frmSettings::AddList(QBoxLayout& page, const OptionRow& row) {
  auto* const box = new QComboBox(page.parentWidget());
  box->setObjectName(ToQString(row.control));
  for (const int value : row.values) {
    box->addItem(row.unit.empty() ? QString::number(value) : QTr(row.unit).arg(value));
  }
  auto* const label = new QLabel(QTr(row.caption), page.parentWidget());
  label->setBuddy(box);
  box->setAccessibleName(label->text());
  // Lists below each other stand in one column.
  QLayoutItem* const last = page.itemAt(page.count() - 1);
  auto* grid = last == nullptr ? nullptr : qobject_cast<QGridLayout*>(last->layout());
  if (grid == nullptr) {
    grid = new QGridLayout;
    grid->setContentsMargins(row.depends_on.empty() ? 3 : kIndent + 3, 0, 0, 0);
    grid->setSpacing(kSpacing);
    grid->setHorizontalSpacing(2 * kSpacing);
    grid->setColumnStretch(2, 1);
    page.addLayout(grid);
  }
  const int line = grid->count() / 2;
  grid->addWidget(label, line, 0);
  grid->addWidget(box, line, 1);
  return box;
}

QWidget* frmSettings::AddSlider(QBoxLayout& page, const OptionRow& row) {
  QLabel* const label = Text(QTr(row.caption), page.parentWidget());
  label->setContentsMargins(3, kSpacing, 0, 0);
  page.addWidget(label);
  auto* const line = new QHBoxLayout;
  line->setContentsMargins(3, 0, 0, 0);
  Scroller1_ = new Scroller(page.parentWidget());
  Scroller1_->setObjectName(ToQString(row.control));
  Scroller1_->setAccessibleName(label->text());
  Scroller1_->setFocusPolicy(Qt::StrongFocus);
  Scroller1_->arrow_keys = true;
  Scroller1_->setMinimumWidth(fontMetrics().averageCharWidth() * 30);
  Scroller1_->Model().SetMax(kRefreshTop);
  Label2_ = new QLabel(page.parentWidget());
  Label2_->setObjectName(QStringLiteral("Label2"));
  Label2_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("000")));
  line->addWidget(Scroller1_, 1);
  line->addWidget(Label2_);
  line->addStretch(1);
  page.addLayout(line);
  return Scroller1_;
}

void frmSettings::AddNote(QBoxLayout& page, const QString& text) {
  QLabel* const note = Text(text, page.parentWidget());
  note->setContentsMargins(3, 0, 0, 0);
  notes_.push_back(note);
  page.addWidget(note);
}

// What is told below a control.
void frmSettings::AddNotes(QBoxLayout& page, const OptionRow& row) {
  if (row.control == "ShowMode(0)") {
    AddNote(page, QTr("* The player then has no icon in the tray."));
  } else if (row.control == "Combo1") {
    AddNote(page, QTr("Default is: 64/16/11025"));
    AddNote(page, QTr("The higher samplerate the higher detail, but higher detail also uses "
                      "more cpu resources! an okay resolution is 8000, for instrument "
                      "measurement 44100 should be selected."));
  }
}

void frmSettings::AddFileTypes(QBoxLayout& page) {
  QWidget* const parent = page.parentWidget();
  QLabel* const label =
      Text(QTr("Select which file types to associate with Kestrel View."), parent);
  page.addWidget(label);
  List1_ = new QTreeWidget(parent);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->setAccessibleName(label->text());
  List1_->setColumnCount(2);
  List1_->setHeaderHidden(true);
  List1_->setRootIsDecorated(false);
  List1_->setUniformRowHeights(true);
  List1_->setAllColumnsShowFocus(true);
  List1_->header()->setStretchLastSection(false);
  List1_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  List1_->setMinimumHeight(fontMetrics().height() * 10);
  for (const FileTypeLine& line : type_list_.lines) {
    auto* const item = new QTreeWidgetItem(List1_);
    QString comment = ToQString(line.comment.empty() ? line.types.front() : line.comment);
    comment[0] = comment[0].toUpper();
    QString extensions;
    for (const std::string& extension : line.extensions) {
      extensions += QStringLiteral(".%1  ").arg(ToQString(extension));
    }
    item->setText(0, comment + QStringLiteral("    "));
    item->setText(1, extensions.trimmed());
    item->setToolTip(1, item->text(1));
    item->setCheckState(0, line.selected ? Qt::Checked : Qt::Unchecked);
  }
  // A click anywhere in the line counts; one on the mark has turned it over by itself.
  connect(List1_, &QTreeWidget::itemPressed, this, [this](const QTreeWidgetItem* item) {
    pressed_ = item;
    pressed_state_ = item->checkState(0);
  });
  connect(List1_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
    if (item != pressed_ || item->checkState(0) != pressed_state_) return;
    item->setCheckState(0, pressed_state_ == Qt::Checked ? Qt::Unchecked : Qt::Checked);
  });
  page.addWidget(List1_, 1);

  auto* const line = new QHBoxLayout;
  const auto button = [this, parent, line](const char* name, const char* caption, bool selects) {
    auto* const result = new QPushButton(QTr(caption), parent);
    result->setObjectName(QLatin1String(name));
    result->setAutoDefault(false);
    connect(result, &QPushButton::clicked, this, [this, selects] { SelectTypes(selects); });
    line->addWidget(result);
  };
  button("Command5", TrLater("Select all"), true);
  button("Command6", TrLater("Select none"), false);
  line->addStretch(1);
  page.addLayout(line);
  if (type_list_.unknown.empty()) return;
  QString names;
  for (const std::string& extension : type_list_.unknown) {
    names += (names.isEmpty() ? QString() : QStringLiteral(", ")) + ToQString(extension);
  }
  AddNote(page, QTr("Played, but no type of their own on this system: %1").arg(names));
}

// A control that means nothing without another one follows it.
void frmSettings::Follow(const Bound& bound) {
  if (bound.row->depends_on.empty()) return;
  auto* const leader = qobject_cast<QAbstractButton*>(ControlNamed(bound.row->depends_on));
  if (leader == nullptr) return;
  const auto follow = [leader](QWidget& widget) {
    widget.setEnabled(leader->isChecked());
    connect(leader, &QAbstractButton::toggled, &widget, &QWidget::setEnabled);
  };
  follow(*bound.widget);
  for (QLabel* const label : findChildren<QLabel*>()) {
    if (label->buddy() == bound.widget) follow(*label);
  }
}

QWidget* frmSettings::ControlNamed(std::string_view name) const {
  const auto found = std::find_if(bound_.begin(), bound_.end(), [name](const Bound& bound) {
    return bound.row->control == name;
  });
  return found == bound_.end() ? nullptr : found->widget;
}

void frmSettings::SetColors(const ColorTable& colors) {
  const QPalette palette = DialogPalette(colors, QPalette());
  setPalette(palette);
  List1_->setPalette(ListPalette(colors, QPalette()));
  QPalette faint = palette;
  faint.setColor(QPalette::WindowText,
                 Blend(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.2));
  for (QLabel* const note : notes_) note->setPalette(faint);
  ScrollerModel& slider = Scroller1_->Model();
  slider.SetBackColor(ColorOf(colors, ColorSlot::kScrollerBack));
  slider.SetCenterLineColor(ColorOf(colors, ColorSlot::kScrollerLine));
  slider.SetRangeColor(ColorOf(colors, ColorSlot::kScrollerRange));
}

// As large as the largest page wants at a width that reads well, and no larger than the screen.
void frmSettings::Size() {
  const QSize room = screen()->availableSize() * 9 / 10;
  ensurePolished();
  // Wide enough for the tabs too, which in some languages are longer than any text below them.
  const QTabBar* const bar = findChild<QTabBar*>();
  const int wanted = std::max(
      {sizeHint().width(), fontMetrics().averageCharWidth() * 74, bar->sizeHint().width()});
  const int width = std::min(wanted, room.width());
  int height = 0;
  for (QWidget* const page : pages_) {
    const int inside = width - 2;
    height = std::max(height, page->layout()->hasHeightForWidth()
                                  ? page->layout()->heightForWidth(inside)
                                  : page->sizeHint().height());
  }
  const int around =
      fontMetrics().height() * 2 + 2 * kMargin + fontMetrics().height() + 14 + 2 * kMargin;
  resize(width, std::min(height + around, room.height()));
  // The last column goes to the edge, unless it needs more than that.
  const int inside =
      width - 2 * kMargin - style_.pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, List1_) - 2;
  List1_->header()->setStretchLastSection(List1_->header()->length() < inside);
}

// --- Settings into controls and back

void frmSettings::ShowSetting(const Bound& bound) {
  const OptionRow& row = *bound.row;
  const std::int32_t value = OptionValue(settings_, row.field).value_or(0);
  const bool on = value != 0;
  switch (row.kind) {
    case OptionKind::kCheck:
      return static_cast<QAbstractButton*>(bound.widget)->setChecked(on);
    case OptionKind::kOffCheck:
      return static_cast<QAbstractButton*>(bound.widget)->setChecked(!on);
    case OptionKind::kChoice:
      return static_cast<QAbstractButton*>(bound.widget)->setChecked(on == (row.value != 0));
    case OptionKind::kIndexList:
    case OptionKind::kValueList:
      return static_cast<QComboBox*>(bound.widget)->setCurrentIndex(OptionLine(row, value));
    case OptionKind::kSlider:
      // The value as it is stored stands until the user moves the slider.
      Scroller1_->Model().SetValue(kRefreshTop - (static_cast<double>(value) - 1));
      Label2_->setText(QString::number(value));
      Scroller1_->Events().scroll = [this](double& position, std::int16_t&, std::int16_t) {
        Scroller1_Scroll(position);
      };
  }
}

void frmSettings::Scroller1_Scroll(double value) {
  settings_.VuRefreshRate = static_cast<std::int32_t>(qRound(kRefreshTop - value)) + 1;
  Label2_->setText(QString::number(settings_.VuRefreshRate));
}

void frmSettings::StoreSetting(const Bound& bound) {
  const OptionRow& row = *bound.row;
  const std::int32_t old = OptionValue(settings_, row.field).value_or(0);
  std::int32_t value = 0;
  switch (row.kind) {
    case OptionKind::kCheck:
    case OptionKind::kOffCheck:
      value = FromBool(static_cast<QAbstractButton*>(bound.widget)->isChecked() ==
                       (row.kind == OptionKind::kCheck));
      break;
    case OptionKind::kChoice:
      if (!static_cast<QAbstractButton*>(bound.widget)->isChecked()) return;
      value = row.value;
      break;
    case OptionKind::kIndexList:
    case OptionKind::kValueList:
      value = OptionOfLine(row, static_cast<QComboBox*>(bound.widget)->currentIndex(), old);
      break;
    case OptionKind::kSlider:
      return;
  }
  SetOptionValue(settings_, row.field, value);
}

void frmSettings::SelectTypes(bool selected) {
  for (int i = 0; i < List1_->topLevelItemCount(); ++i) {
    List1_->topLevelItem(i)->setCheckState(0, selected ? Qt::Checked : Qt::Unchecked);
  }
}

void frmSettings::Command1_Click() {
  for (const Bound& bound : bound_) StoreSetting(bound);
  std::vector<FileTypeLine> after = type_list_.lines;
  bool differs = false;
  for (std::size_t i = 0; i < after.size(); ++i) {
    const QTreeWidgetItem* const item = List1_->topLevelItem(static_cast<int>(i));
    after[i].selected = item->checkState(0) == Qt::Checked;
    differs = differs || after[i].selected != type_list_.lines[i].selected;
  }
  if (differs) {
    types_.UpdateFileTypes(type_list_.lines, after);
    if (refresh_icons_) refresh_icons_();
  }
  accept();
}

void frmSettings::Command3_Click() {
  wants_colors_ = true;
  Command1_Click();
}

}  // namespace kv
