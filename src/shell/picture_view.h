// A drawing that fills its control: the logo over the video area while nothing plays. Owned by its
// parent; interface thread only.
#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

namespace kv {

class PictureView : public QWidget {
  Q_OBJECT

 public:
  // `file`: an SVG, stretched over the control.
  explicit PictureView(const QString& file, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString file_;
  QPixmap picture_;
};

}  // namespace kv
