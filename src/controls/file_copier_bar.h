// The window of a FileCopier, `Picture1`: a bar with the percentage on it.
//
// Draws again only when what it shows has changed. Owned by its parent widget. Interface thread;
// sizes are device-independent pixels.
#pragma once

#include "controls/accessible_qt.h"
#include "controls/file_copier.h"

#include <QString>
#include <QWidget>

namespace kv {

class FileCopierBar : public QWidget {
  Q_OBJECT

 public:
  // Takes over the copier's `refresh`; the copier must outlive the widget.
  explicit FileCopierBar(FileCopier& copier, QWidget* parent = nullptr);
  ~FileCopierBar() override;

  // As they are on the screen.
  int Percent() const { return percent_; }
  const QString& Caption() const { return caption_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Refresh();

  FileCopier& copier_;
  // What is on the screen.
  QString caption_;
  int percent_ = 0;
  FileCopierLook look_;
  ValueAnnouncer announcer_;
};

}  // namespace kv
