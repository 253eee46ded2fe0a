#include "playlist/frm_search_vis.h"

#include "system/translation_qt.h"

namespace kv {

frmSearchVis::frmSearchVis(QWidget* owner) : QLabel(QTr("Searching in playlist...."), owner) {
  constexpr int kMargin = 18;
  setObjectName(QStringLiteral("frmSearchVis"));
  setMargin(kMargin);
  setFrameShape(QFrame::Box);
  setAutoFillBackground(true);
  adjustSize();
  move(owner->rect().center() - rect().center());
  show();
}

}  // namespace kv
