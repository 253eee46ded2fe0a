// `frmBusy`: says that something takes its time. Not modal; whoever shows it closes it.
#pragma once

#include <QWidget>

namespace kv {

class frmBusy : public QWidget {
  Q_OBJECT

 public:
  explicit frmBusy(QWidget* parent);
};

}  // namespace kv
