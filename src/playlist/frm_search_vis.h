// `frmSearchVis`: says over the middle of the list that it is being searched. Owned by
// `frmPlaylist`; interface thread only.
#pragma once

#include <QLabel>

namespace kv {

class frmSearchVis : public QLabel {
  Q_OBJECT

 public:
  explicit frmSearchVis(QWidget* owner);
};

}  // namespace kv
