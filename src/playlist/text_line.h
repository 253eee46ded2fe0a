// One line of text that never asks for more room than it has: what does not fit is shortened when
// it is painted, so that setting a text costs nothing. Interface thread only.
#pragma once

#include <QWidget>

#include <string>

namespace kv {

class TextLine : public QWidget {
  Q_OBJECT

 public:
  enum class Shorten { kEnd, kPath };  // "some te..."; a path keeps its name

  TextLine(Shorten how, QWidget* parent);

  // UTF-8 or the bytes of a path.
  void SetText(const std::string& text);
  const std::string& Text() const { return text_; }

  // What is to be seen at the present width, and what would be if there were room.
  QString Shown() const;
  QString Whole() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Shorten how_;
  std::string text_;
};

}  // namespace kv
