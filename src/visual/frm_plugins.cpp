#include "visual/frm_plugins.h"

#include "system/shown_text.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"
#include "visual/meter_preview_qt.h"

#include <QCloseEvent>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr QSize kPicture(256, 144);
constexpr int kListWidth = 200;
constexpr int kWidestList = 340;
constexpr int kRowMargins = 40;  // marker, gaps and frame
constexpr int kMarker = 16;
constexpr int kDescriptionLines = 4;
constexpr std::size_t kLongestName = 80;
constexpr std::size_t kLongestFact = 200;

constexpr std::array kLabels = {TrLater("Type:"),   TrLater("Has config:"),     TrLater("Version:"),
                                TrLater("Author:"), TrLater("Author website:"), TrLater("Name:")};
constexpr std::size_t kAddressLabel = 4;

QPixmap MarkerPicture(bool active, const QColor& ink, double scale) {
  QPixmap picture(QSize(kMarker, kMarker) * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF middle(kMarker / 2.0, kMarker / 2.0);
  QColor ring = ink;
  if (!active) ring.setAlphaF(0.45F);
  painter.setPen(QPen(ring, 1.3));
  painter.drawEllipse(middle, 4.8, 4.8);
  if (active) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(middle, 2.6, 2.6);
  }
  return picture;
}

// The marker of a row: a disc in its ring for the active one, a faint ring for the others.
QIcon MarkerIcon(bool active, const QPalette& colors, double scale) {
  QIcon icon;
  icon.addPixmap(MarkerPicture(active, colors.color(QPalette::Text), scale), QIcon::Normal);
  icon.addPixmap(MarkerPicture(active, colors.color(QPalette::HighlightedText), scale),
                 QIcon::Selected);
  return icon;
}

}  // namespace

frmPlugins::frmPlugins(const Parts& parts, const QPalette& colors, QWidget* parent)
    : QDialog(parent),
      parts_(parts),
      rules_(parts.catalogue, parts.settings, parts.state, parts.text),
      Command1_(new QPushButton(QTr("&Use selected plugin"), this)),
      Command2_(new QPushButton(QTr("C&onfigure plugin"), this)),
      cmdClose_(new QPushButton(QTr("&Close"), this)) {
  setObjectName(QStringLiteral("frmPlugins"));
  setWindowTitle(QTr("Kestrelview - Plugin Manager"));
  setModal(true);
  setPalette(colors);

  auto* const page = new QGridLayout(this);
  page->addWidget(MakeList(), 0, 0);
  page->addWidget(MakeFacts(), 0, 1);
  page->setColumnStretch(1, 1);
  page->setRowStretch(0, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(Command1_);
  buttons->addWidget(Command2_);
  buttons->addStretch();
  buttons->addWidget(cmdClose_);
  page->addLayout(buttons, 1, 0, 1, 2);

  Command1_->setObjectName(QStringLiteral("Command1"));
  Command2_->setObjectName(QStringLiteral("Command2"));
  Command1_->setDefault(true);
  connect(Command1_, &QPushButton::clicked, this, &frmPlugins::Command1_Click);
  connect(Command2_, &QPushButton::clicked, this, &frmPlugins::Command2_Click);
  connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);
  connect(this, &QDialog::finished, this, &frmPlugins::Unload);

  rules_.Form_Load();
  FillList();
}

frmPlugins::~frmPlugins() {
  Unload();
}

QWidget* frmPlugins::MakeList() {
  auto* const side = new QWidget(this);
  auto* const rows = new QVBoxLayout(side);
  rows->setContentsMargins(0, 0, 0, 0);
  auto* const label = new QLabel(QTr("&Installed plugins:"), side);
  List1_ = new QListWidget(side);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  List1_->setIconSize(QSize(kMarker, kMarker));
  List1_->setUniformItemSizes(true);
  label->setBuddy(List1_);
  rows->addWidget(label);
  rows->addWidget(List1_, 1);
  connect(List1_, &QListWidget::currentRowChanged, this, &frmPlugins::List1_Click);
  connect(List1_, &QListWidget::itemDoubleClicked, this, &frmPlugins::Command1_Click);
  return side;
}

QWidget* frmPlugins::MakeFacts() {
  auto* const Frame1 = new QGroupBox(QTr("Plugin data:"), this);
  auto* const page = new QVBoxLayout(Frame1);
  auto* const form = new QFormLayout;
  form->setLabelAlignment(Qt::AlignLeft);
  page->addLayout(form);
  // An address in it is not broken, however long the labels are.
  const int narrowest = fontMetrics().horizontalAdvance(
      ToQString(rules_.FactsOf(0).values[kAddressLabel]) + QLatin1Char(' '));
  for (std::size_t index = 0; index < kLabels.size(); ++index) {
    auto* const value = new QLabel(QTr("none"), Frame1);
    value->setTextFormat(Qt::PlainText);
    value->setWordWrap(true);
    value->setMinimumWidth(narrowest);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    value->setObjectName(QStringLiteral("Label4_%1").arg(index));
    Label4_[index] = value;
    form->addRow(QTr(kLabels[index]), value);
  }
  auto* const about = new QLabel(QTr("&Description:"), Frame1);
  Text1_ = new QPlainTextEdit(Frame1);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setReadOnly(true);
  Text1_->setTabChangesFocus(true);
  Text1_->setMinimumHeight(Text1_->fontMetrics().lineSpacing() * kDescriptionLines);
  about->setBuddy(Text1_);
  page->addWidget(about);
  page->addWidget(Text1_, 1);
  page->addWidget(new QLabel(QTr("Picture:"), Frame1));
  Image1_ = new QLabel(Frame1);
  Image1_->setObjectName(QStringLiteral("Image1"));
  Image1_->setFixedSize(kPicture);
  Image1_->setAlignment(Qt::AlignCenter);
  page->addWidget(Image1_, 0, Qt::AlignLeft);
  return Frame1;
}

void frmPlugins::FillList() {
  for (const std::string& text : rules_.Rows()) {
    List1_->addItem(ToQString(ShownText(text, kLongestName)));
  }
  ShowMarkers();
  // Any row may be the bold one.
  QFont bold = List1_->font();
  bold.setBold(true);
  const QFontMetrics measure(bold);
  int widest = 0;
  for (int row = 0; row < List1_->count(); ++row) {
    widest = std::max(widest, measure.horizontalAdvance(List1_->item(row)->text()));
  }
  List1_->setMinimumWidth(std::clamp(widest + kRowMargins, kListWidth, kWidestList));
  List1_->setCurrentRow(static_cast<int>(rules_.ActiveRow()));
  List1_->setFocus();
}

void frmPlugins::ShowMarkers() {
  for (int row = 0; row < List1_->count(); ++row) {
    const bool active = static_cast<std::size_t>(row) == rules_.ActiveRow();
    QListWidgetItem& item = *List1_->item(row);
    item.setIcon(MarkerIcon(active, palette(), devicePixelRatioF()));
    item.setData(Qt::AccessibleDescriptionRole, active ? QTr("in use") : QTr("not in use"));
    QFont font = List1_->font();
    font.setBold(active);
    item.setFont(font);
  }
}

std::size_t frmPlugins::Row() const {
  return static_cast<std::size_t>(std::max(0, List1_->currentRow()));
}

void frmPlugins::List1_Click() {
  const PluginFacts facts = rules_.FactsOf(Row());
  for (std::size_t index = 0; index < Label4_.size(); ++index) {
    Label4_[index]->setText(ToQString(ShownText(facts.values[index], kLongestFact)));
  }
  Text1_->setPlainText(ToQString(facts.description));
  ShowPicture(facts);
  Command2_->setEnabled(facts.can_configure);
}

void frmPlugins::ShowPicture(const PluginFacts& facts) {
  const double scale = devicePixelRatioF();
  if (facts.built_in) {
    Image1_->setPixmap(
        QPixmap::fromImage(MeterPreview(parts_.settings, palette(), kPicture, scale)));
    return;
  }
  if (!facts.picture) {
    Image1_->setPixmap(QPixmap());
    return;
  }
  const PluginPicture& picture = *facts.picture;
  const QImage image(reinterpret_cast<const uchar*>(picture.pixels.data()), picture.width,
                     picture.height, static_cast<qsizetype>(picture.width) * 4,
                     QImage::Format_ARGB32);
  QPixmap shown = QPixmap::fromImage(
      image.scaled(kPicture * scale, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  shown.setDevicePixelRatio(scale);
  Image1_->setPixmap(shown);
}

void frmPlugins::Command1_Click() {
  const QPointer<frmPlugins> alive(this);
  rules_.UsePlugin(Row());
  if (!alive) return;
  ShowMarkers();
  if (parts_.state.VumeterOpen) parts_.set_meter_caption(rules_.MeterCaption());
}

void frmPlugins::Command2_Click() {
  rules_.ConfigPlugin(Row());
}

void frmPlugins::SetColors(const QPalette& colors) {
  setPalette(colors);
}

void frmPlugins::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && List1_ != nullptr && List1_->count() > 0) {
    ShowMarkers();
    List1_Click();
  }
}

void frmPlugins::closeEvent(QCloseEvent* event) {
  Unload();
  QDialog::closeEvent(event);
}

void frmPlugins::Unload() {
  if (!std::exchange(unloaded_, true)) rules_.Form_QueryUnload();
}

}  // namespace kv
