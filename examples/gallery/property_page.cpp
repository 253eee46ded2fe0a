#include "property_page.h"

#include "controls/color_qt.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <limits>

namespace kv {
namespace {

constexpr double kWidest = 1e9;

void ShowColor(QPushButton& button, std::int32_t color) {
  QPixmap swatch(button.iconSize());
  swatch.fill(ToQColor(color, button.palette()));
  button.setIcon(QIcon(swatch));
  button.setText(QStringLiteral("%1").arg(static_cast<std::uint32_t>(color), 8, 16, QChar(u'0')));
}

}  // namespace

PropertyPage::PropertyPage(QWidget* parent) : QWidget(parent), rows_(new QFormLayout(this)) {}

void PropertyPage::AddEditor(std::string_view key, QWidget* editor) {
  const QString name = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
  editor->setObjectName(name);
  rows_->addRow(name, editor);
}

void PropertyPage::AddRow(std::string_view key, PropertyKind /*kind*/, bool value,
                          std::function<void(bool)> changed) {
  auto* const box = new QCheckBox(this);
  box->setChecked(value);
  connect(box, &QCheckBox::toggled, this, std::move(changed));
  AddEditor(key, box);
}

void PropertyPage::AddRow(std::string_view key, PropertyKind kind, std::int32_t value,
                          std::function<void(std::int32_t)> changed) {
  if (kind == PropertyKind::kColor) {
    auto* const button = new QPushButton(this);
    ShowColor(*button, value);
    connect(button, &QPushButton::clicked, this, [button, value, changed]() mutable {
      const QColor chosen = QColorDialog::getColor(ToQColor(value, button->palette()), button);
      if (!chosen.isValid()) return;
      value = chosen.red() | chosen.green() << 8 | chosen.blue() << 16;
      ShowColor(*button, value);
      changed(value);
    });
    AddEditor(key, button);
    return;
  }
  auto* const box = new QSpinBox(this);
  box->setRange(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
  box->setValue(value);
  connect(box, &QSpinBox::valueChanged, this, std::move(changed));
  AddEditor(key, box);
}

void PropertyPage::AddRow(std::string_view key, PropertyKind /*kind*/, double value,
                          std::function<void(double)> changed) {
  auto* const box = new QDoubleSpinBox(this);
  box->setRange(-kWidest, kWidest);
  box->setValue(value);
  connect(box, &QDoubleSpinBox::valueChanged, this, std::move(changed));
  AddEditor(key, box);
}

void PropertyPage::AddRow(std::string_view key, PropertyKind /*kind*/, const std::string& value,
                          std::function<void(std::string)> changed) {
  auto* const line = new QLineEdit(QString::fromStdString(value), this);
  connect(line, &QLineEdit::textChanged, this,
          [changed = std::move(changed)](const QString& text) { changed(text.toStdString()); });
  AddEditor(key, line);
}

}  // namespace kv
