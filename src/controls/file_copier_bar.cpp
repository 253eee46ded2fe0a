#include "controls/file_copier_bar.h"

#include "controls/accessible_qt.h"
#include "controls/color_qt.h"

#include <QFont>
#include <QPainter>

#include <algorithm>

namespace kv {
namespace {

constexpr QSize kPreferredSize(300, 22);
constexpr double kReadable = 4.5;  // contrast of text, WCAG 2 level AA

// `wanted` where it can be read on `ground`, else black or white.
QColor Readable(const QColor& wanted, const QColor& ground) {
  if (ContrastRatio(wanted, ground) >= kReadable) return wanted;
  const QColor black(Qt::black);
  const QColor white(Qt::white);
  return ContrastRatio(black, ground) > ContrastRatio(white, ground) ? black : white;
}

}  // namespace

FileCopierBar::FileCopierBar(FileCopier& copier, QWidget* parent)
    : QWidget(parent), copier_(copier), announcer_(*this, [this] { return percent_; }) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAttribute(Qt::WA_OpaquePaintEvent);
  InstallControlsAccessibility();
  copier_.refresh = [this] { Refresh(); };
  Refresh();
}

FileCopierBar::~FileCopierBar() {
  copier_.refresh = nullptr;
}

QSize FileCopierBar::sizeHint() const {
  return kPreferredSize;
}

void FileCopierBar::Refresh() {
  // On a fast disk most blocks leave the percentage as it was.
  const QString caption = QString::fromStdString(copier_.Caption());
  if (caption == caption_ && copier_.Percent() == percent_ && copier_.Look() == look_) return;
  const bool moved = copier_.Percent() != percent_;
  caption_ = caption;
  percent_ = copier_.Percent();
  look_ = copier_.Look();
  QFont font(QString::fromStdString(look_.FontName));
  font.setPointSizeF(look_.FontPoints);
  setFont(font);
  if (moved) announcer_.Changed();
  update();
}

void FileCopierBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  copier_.UpdateDisplay(0, "");
}

void FileCopierBar::paintEvent(QPaintEvent* /*event*/) {
  const QColor back = ToQColor(look_.BackColor, palette());
  const QColor fill = ToQColor(look_.FillColor, palette());
  const QColor ink = ToQColor(look_.ForeColor, palette());
  const QRectF whole = rect();
  QRectF bar = whole;
  bar.setWidth(whole.width() / 100.0 * std::clamp<int>(percent_, 0, 100));
  QRectF rest = whole;
  rest.setLeft(bar.right());

  QPainter painter(this);
  painter.fillRect(whole, back);
  painter.fillRect(bar, fill);
  if (look_.ShowText) {
    // The text goes on over the bar, in a colour that can be read there.
    const auto print = [&](const QRectF& part, const QColor& ground) {
      painter.setClipRect(part);
      painter.setPen(Readable(ink, ground));
      painter.drawText(whole, Qt::AlignCenter | Qt::TextSingleLine, caption_);
    };
    print(bar, fill);
    print(rest, back);
    painter.setClipping(false);
  }
  if (look_.BorderStyle != 0) {
    constexpr double kFrameShade = 0.45;
    const QColor frame = Blend(back, palette().color(QPalette::WindowText), kFrameShade);
    painter.setPen(QPen(frame, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(whole.adjusted(0.5, 0.5, -0.5, -0.5));  // the pen's middle: crisp at any scale
  }
}

}  // namespace kv
