// A check box or round button whose caption takes as many lines as the width asks for, so that no
// font is too large for it.
//
// Owned by its parent; interface thread only.
#pragma once

#include <QCheckBox>
#include <QPaintEvent>
#include <QRadioButton>
#include <QString>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>
#include <type_traits>

namespace kv {

template <class Button>
class Wrapped : public Button {
 public:
  Wrapped(const QString& caption, QWidget* parent) : Button(caption, parent) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    this->setSizePolicy(policy);
  }

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override {
    return std::max(TextIn(width).height(), Indicator()) + 2 * kFrame;
  }
  QSize sizeHint() const override {
    const int width = TextLeft() + this->fontMetrics().horizontalAdvance(this->text()) + 2 * kFrame;
    return {width + 1, heightForWidth(width + 1)};
  }
  QSize minimumSizeHint() const override {
    const int line = this->fontMetrics().height();
    return {TextLeft() + 8 * line, line + 2 * kFrame};
  }

 protected:
  bool hitButton(const QPoint& point) const override {
    return this->rect().contains(point) && point.x() < TextIn(this->width()).right() + kFrame;
  }

  void paintEvent(QPaintEvent* /*event*/) override {
    constexpr bool kRound = std::is_same_v<Button, QRadioButton>;
    QStylePainter painter(this);
    QStyleOptionButton option;
    this->initStyleOption(&option);
    const QRect text = TextIn(this->width());
    const QRect whole = this->rect();
    QStyleOptionButton mark = option;
    const int line = this->fontMetrics().height();
    const int top = kFrame + std::max(0, (line - Indicator()) / 2);
    mark.rect = QStyle::visualRect(this->layoutDirection(), whole,
                                   QRect(kFrame, top, Indicator(), Indicator()));
    painter.drawPrimitive(kRound ? QStyle::PE_IndicatorRadioButton : QStyle::PE_IndicatorCheckBox,
                          mark);
    painter.setPen(option.palette.color(QPalette::WindowText));
    const QRect place = QStyle::visualRect(this->layoutDirection(), whole, text);
    painter.drawText(place, Flags(), this->text());
    if (!this->hasFocus()) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = place.adjusted(-kFrame - 1, -kFrame, kFrame + 1, kFrame) & whole;
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
  }

 private:
  static constexpr int kFrame = 3;  // room for the focus

  int Flags() const {
    return Qt::TextWordWrap | Qt::TextHideMnemonic | Qt::AlignTop |
           static_cast<int>(QStyle::visualAlignment(this->layoutDirection(), Qt::AlignLeft));
  }
  int Indicator() const {
    return this->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this);
  }
  int TextLeft() const {
    return kFrame + Indicator() +
           this->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, this);
  }
  // Where the caption stands in a control of this width, from left to right.
  QRect TextIn(int width) const {
    const int left = TextLeft();
    const int most = std::max(1, width - left - kFrame);
    const int line = this->fontMetrics().height();
    const int top = kFrame + std::max(0, (Indicator() - line) / 2);
    const QRect text =
        this->fontMetrics().boundingRect(QRect(0, 0, most, 1 << 15), Flags(), this->text());
    return {left, top, std::min(most, text.width() + 1), text.height()};
  }
};

}  // namespace kv
