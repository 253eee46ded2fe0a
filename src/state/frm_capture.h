// `frmCapture`: a picture of the whole desktop from which the user takes a colour.
//
// A magnifying glass follows the pointer. A click keeps the colour passed over last, any key
// without Shift, Ctrl or Alt gives up. Modal; deletes itself. Interface thread only.
#pragma once

#include <QImage>
#include <QPoint>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace kv {

class frmCapture : public QWidget {
  Q_OBJECT

 public:
  // `desktop`: the snapshot, whose pixel ratio counts, as large as `area` of the desktop. `done`
  // gets the colour (0x00BBGGRR) or -1, once, unless the window is destroyed before.
  frmCapture(QImage desktop, const QRect& area, std::function<void(std::int32_t color)> done,
             QWidget* owner);

  // Covers the screen.
  void Form_Load();

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void PassOver(QPoint point);
  QPoint PixelAt(QPoint point) const;
  QRect Glass() const;

  QImage desktop_;
  std::function<void(std::int32_t color)> done_;
  QPoint pointer_;
  bool pressed_ = false;
  std::int32_t CapturedColor_ = -1;
};

}  // namespace kv
