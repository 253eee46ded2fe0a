// `PicTime`: the strip that times and stream titles are printed on, by position. Owned by the main
// panel; interface thread only.
#pragma once

#include "controls/picture_pace.h"

#include <QColor>
#include <QGlyphRun>
#include <QRawFont>
#include <QString>
#include <QWidget>

#include <vector>

namespace kv {

class TimeStrip : public QWidget {
  Q_OBJECT

 public:
  explicit TimeStrip(QWidget* parent = nullptr);

  // Takes off what is printed.
  void Cls();
  // Prints `text` from `x` on (device-independent pixels), centred in the height.
  void Print(int x, const QString& text);
  // All that is printed, from left to right.
  QString Text() const;
  // A picture is about to be painted: what was printed since the last one is painted with it.
  void PictureComes() { pace_.PictureComes(); }
  void SetColors(const QColor& back, const QColor& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    int x;
    QString text;
    QGlyphRun glyphs;  // empty for a text that needs more than the strip's own font
  };

  QGlyphRun Glyphs(const QString& text) const;

  PicturePace pace_{[this] { update(); }};
  std::vector<Line> lines_;
  QRawFont raw_font_;
  QColor back_ = Qt::black;
  QColor ink_ = Qt::white;
};

}  // namespace kv
