#include "controls/color_select.h"

#include "controls/accessible_qt.h"
#include "controls/color_qt.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPointer>

#include <charconv>
#include <utility>

namespace kv {
namespace {

constexpr const char* kKey = "Software\\Kestrelview\\ColorChooser";
constexpr QSize kSwatch(48, 20);

std::string NameOf(std::size_t index) {
  return "C" + std::to_string(index);
}

std::string ReadText(const Registry& registry, std::size_t index) {
  return registry.RegReadValue(RegistryRoot::kCurrentUser, kKey, NameOf(index));
}

// What is no number is black.
CustomColors ReadCustomColors(const Registry& registry) {
  CustomColors colors{};
  for (std::size_t i = 0; i < colors.size(); ++i) {
    const std::string text = ReadText(registry, i);
    std::from_chars(text.data(), text.data() + text.size(), colors.at(i));
  }
  return colors;
}

// Every write saves the whole store, so only what has changed is written.
void WriteCustomColors(Registry& registry, const CustomColors& colors) {
  for (std::size_t i = 0; i < colors.size(); ++i) {
    const std::string text = std::to_string(colors.at(i));
    if (ReadText(registry, i) == text) continue;
    registry.RegWriteValue(RegistryRoot::kCurrentUser, kKey, NameOf(i), kRegistryText, text);
  }
}

}  // namespace

pucColorSelect::pucColorSelect(Dialogs& dialogs, Registry& registry, QWidget* parent)
    : QWidget(parent),
      dialogs_(dialogs),
      registry_(registry),
      caption_(new QLabel(this)),
      shpColour_(new QFrame(this)),
      cmdBrowse_(new QToolButton(this)) {
  InstallControlsAccessibility();
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(caption_);
  row->addWidget(shpColour_, 1);
  row->addWidget(cmdBrowse_);
  shpColour_->setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
  shpColour_->setMinimumSize(kSwatch);
  shpColour_->setAutoFillBackground(true);
  cmdBrowse_->setObjectName(QStringLiteral("cmdBrowse"));
  cmdBrowse_->setText(QStringLiteral("..."));
  cmdBrowse_->setFocusPolicy(Qt::StrongFocus);
  caption_->setBuddy(cmdBrowse_);
  connect(cmdBrowse_, &QToolButton::clicked, this, &pucColorSelect::Browse);
  LoadProperties(properties_);
}

void pucColorSelect::LoadProperties(const ColorSelectProperties& properties) {
  properties_ = properties;
  const QString caption = QString::fromStdString(properties_.Caption);
  caption_->setText(caption);
  QString spoken = caption;
  cmdBrowse_->setAccessibleName(spoken.remove(QLatin1Char('&')));
  QFont font;
  const bool own =
      !properties_.Font.empty() && font.fromString(QString::fromStdString(properties_.Font));
  setFont(own ? font : QFont());
  setEnabled(properties_.Enabled);
  ShowColour();
}

void pucColorSelect::SetColour(std::int32_t colour) {
  properties_.Colour = colour;
  ShowColour();
}

void pucColorSelect::ShowColour() {
  QPalette colors = shpColour_->palette();
  colors.setColor(QPalette::Window, ToQColor(properties_.Colour, palette()));
  shpColour_->setPalette(colors);
  // Who cannot see the swatch hears it with the button.
  cmdBrowse_->setAccessibleDescription(ShownName());
}

QString pucColorSelect::ShownName() const {
  return ToQColor(properties_.Colour, palette()).name().toUpper();
}

// The dialog pumps, and may take the control with it.
void pucColorSelect::Browse() {
  const QPointer<pucColorSelect> alive(this);
  const QColor shown = ToQColor(properties_.Colour, palette());
  const std::int32_t start = shown.red() | shown.green() << 8 | shown.blue() << 16;
  const ColorDialogResult chosen = dialogs_.ShowColorDialog(start, ReadCustomColors(registry_));
  if (!alive || chosen.color < 0) return;
  WriteCustomColors(registry_, chosen.custom);
  const std::int32_t old = std::exchange(properties_.Colour, chosen.color);
  if (ColourChange) ColourChange(old, chosen.color);
  if (alive) ShowColour();
}

void pucColorSelect::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton && rect().contains(event->position().toPoint())) {
    if (RightClick) RightClick();
  } else {
    event->ignore();
  }
}

void pucColorSelect::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange) properties_.Enabled = isEnabled();
  QWidget::changeEvent(event);
}

}  // namespace kv
