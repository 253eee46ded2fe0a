#include "view/frm_busy.h"

#include "system/translation_qt.h"

#include <QLabel>
#include <QVBoxLayout>

namespace kv {

frmBusy::frmBusy(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
  constexpr int kMargin = 24;
  setObjectName(QStringLiteral("frmBusy"));
  setWindowTitle(QStringLiteral("Kestrelview"));
  auto* const page = new QVBoxLayout(this);
  page->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  page->setSizeConstraint(QLayout::SetFixedSize);
  page->addWidget(new QLabel(QTr("Busy, please wait..."), this));
}

}  // namespace kv
