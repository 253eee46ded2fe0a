// `picInfo`: says over the movie area what the player waits for, with a picture. Owned by
// `frmMain`; interface thread only.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>

namespace kv {

class StatusStrip : public QWidget {
  Q_OBJECT

 public:
  explicit StatusStrip(QWidget* parent = nullptr);

  // `picture`: the drawing `picStatus`; `text`: the label `lbInfo` below it.
  void Show(const QString& picture, const QString& text);
  void SetColors(const QColor& back, const QColor& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString picture_;
  QString text_;
  QColor back_;
  QColor ink_;
};

}  // namespace kv
