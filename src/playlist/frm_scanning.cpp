#include "playlist/frm_scanning.h"

#include "system/translation_qt.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace kv {
namespace {

constexpr Qt::WindowFlags kFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                   Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
constexpr int kWidth = 440;
constexpr int kMargin = 14;
constexpr int kSpacing = 8;

}  // namespace

frmScanning::frmScanning(Session& session, QWidget* owner)
    : QWidget(owner, kFlags),
      session_(session),
      path_(new TextLine(TextLine::Shorten::kPath, this)),
      count_(new TextLine(TextLine::Shorten::kEnd, this)),
      Command1_(new QPushButton(QTr("&Cancel"), this)) {
  session_.ScanWindowOpen = true;
  session_.ScanAbort = false;
  setObjectName(QStringLiteral("frmScanning"));
  setWindowTitle(QTr("Kestrelview - Adding files to playlist..."));
  if (owner != nullptr) setPalette(owner->palette());
  path_->setAccessibleName(QTr("File"));
  count_->setAccessibleName(QTr("Files in list"));
  auto* const bottom = new QHBoxLayout;
  bottom->addWidget(count_, 1);
  bottom->addWidget(Command1_);
  auto* const page = new QVBoxLayout(this);
  page->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  page->setSpacing(kSpacing);
  page->addWidget(path_);
  page->addLayout(bottom);
  setFixedSize(kWidth, page->sizeHint().height());
  Command1_->setDefault(true);
  Command1_->setFocus();
  connect(Command1_, &QPushButton::clicked, this, &frmScanning::Command1_Click);
}

frmScanning::~frmScanning() {
  session_.ScanWindowOpen = false;
}

void frmScanning::Command1_Click() {
  session_.ScanAbort = true;
  Command1_->setEnabled(false);
}

void frmScanning::closeEvent(QCloseEvent* event) {
  Command1_Click();
  event->ignore();  // it goes with the end of the walk, in a moment
}

void frmScanning::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Command1_Click();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace kv
