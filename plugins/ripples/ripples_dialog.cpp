#include "ripples_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSlider>
#include <QVBoxLayout>

#include <array>
#include <kestrelview/visual_tools.h>

namespace {

constexpr std::array kColors = {
    RipplesColors{"Lagoon", 0xFF04222F, 0xFF1590A0, 0xFFEFFFF4},
    RipplesColors{"Ember", 0xFF1C0705, 0xFFB8431A, 0xFFFFE9A8},
    RipplesColors{"Mercury", 0xFF14161A, 0xFF7C8794, 0xFFFFFFFF},
};
constexpr int kColorRows = static_cast<int>(kColors.size());
constexpr int kSliderWidth = 220;

const char kRain[] = "rain";
const char kRun[] = "run";
const char kColorRow[] = "colors";
const char kGlint[] = "glint";

}  // namespace

const RipplesColors* RipplesColorsOf(int row) {
  return row >= 1 && row <= kColorRows ? &kColors[static_cast<std::size_t>(row - 1)] : nullptr;
}

RipplesOptions LoadRipplesOptions() {
  const QString file = kestrelview::SettingsFile(QStringLiteral("ripples"));
  RipplesOptions options;
  if (file.isEmpty()) return options;
  const QSettings saved(file, QSettings::IniFormat);
  options.rain = std::clamp(saved.value(QLatin1String(kRain), options.rain).toInt(), 0, 100);
  options.run = std::clamp(saved.value(QLatin1String(kRun), options.run).toInt(), 0, 100);
  options.colors =
      std::clamp(saved.value(QLatin1String(kColorRow), options.colors).toInt(), 0, kColorRows);
  options.glint = saved.value(QLatin1String(kGlint), options.glint).toBool();
  return options;
}

void SaveRipplesOptions(const RipplesOptions& options) {
  const QString file = kestrelview::SettingsFile(QStringLiteral("ripples"));
  if (file.isEmpty()) return;
  QSettings saved(file, QSettings::IniFormat);
  saved.setValue(QLatin1String(kRain), options.rain);
  saved.setValue(QLatin1String(kRun), options.run);
  saved.setValue(QLatin1String(kColorRow), options.colors);
  saved.setValue(QLatin1String(kGlint), options.glint);
}

RipplesDialog::RipplesDialog(const RipplesOptions& options,
                             const std::function<void(const RipplesOptions&)>& try_out,
                             QWidget* parent)
    : QDialog(parent), colors_(new QComboBox(this)), glint_(new QCheckBox(this)) {
  setWindowTitle(QStringLiteral("Ripples"));
  auto* const all = new QVBoxLayout(this);
  all->setSizeConstraint(QLayout::SetFixedSize);
  auto* const page = new QFormLayout;
  all->addLayout(page);
  rain_ = AddSlider(options.rain, QStringLiteral("drizzle"), QStringLiteral("downpour"), *page,
                    QStringLiteral("&Rain:"));
  run_ = AddSlider(options.run, QStringLiteral("briefly"), QStringLiteral("long"), *page,
                   QStringLiteral("&Waves run:"));
  colors_->addItem(QStringLiteral("As the colour scheme"));
  for (const RipplesColors& row : kColors) colors_->addItem(QLatin1String(row.name));
  page->addRow(QStringLiteral("&Colours:"), colors_);
  glint_->setText(QStringLiteral("&Glints on the crests"));
  page->addRow(QString(), glint_);

  auto* const buttons = new QDialogButtonBox(
      QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::RestoreDefaults, this);
  all->addWidget(buttons);
  Show(options);

  const auto tell = [this, try_out] { try_out(Options()); };
  connect(rain_, &QSlider::valueChanged, this, tell);
  connect(run_, &QSlider::valueChanged, this, tell);
  connect(colors_, &QComboBox::currentIndexChanged, this, tell);
  connect(glint_, &QCheckBox::toggled, this, tell);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(this, &QDialog::rejected, this, [options, try_out] { try_out(options); });
  connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
          [this] { Show(RipplesOptions()); });
}

QSlider* RipplesDialog::AddSlider(int value, const QString& least, const QString& most,
                                  QFormLayout& page, const QString& label) {
  auto* const slider = new QSlider(Qt::Horizontal, this);
  slider->setRange(0, 100);
  slider->setPageStep(10);
  slider->setValue(value);
  slider->setMinimumWidth(kSliderWidth);
  auto* const ends = new QHBoxLayout;
  ends->addWidget(new QLabel(least, this));
  ends->addStretch();
  ends->addWidget(new QLabel(most, this));
  auto* const field = new QVBoxLayout;
  field->setSpacing(0);
  field->addWidget(slider);
  field->addLayout(ends);
  auto* const name = new QLabel(label, this);
  name->setBuddy(slider);
  page.addRow(name, field);
  return slider;
}

void RipplesDialog::Show(const RipplesOptions& options) {
  rain_->setValue(options.rain);
  run_->setValue(options.run);
  colors_->setCurrentIndex(options.colors);
  glint_->setChecked(options.glint);
}

RipplesOptions RipplesDialog::Options() const {
  return {rain_->value(), run_->value(), colors_->currentIndex(), glint_->isChecked()};
}
