#include "view/frm_help.h"

#include "system/translation_qt.h"

#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QKeySequence>
#include <QResizeEvent>
#include <QShortcut>

namespace kv {

frmHelp::frmHelp(const std::string& page, ShellServices& shell, QWidget* parent)
    : QWidget(parent, Qt::Window), shell_(shell), WebBrowser1(new QTextBrowser(this)) {
  constexpr QSize kFirstSize(720, 540);
  setObjectName(QStringLiteral("frmHelp"));
  setWindowTitle(QTr("Help - Kestrelview"));
  WebBrowser1->setFrameShape(QFrame::NoFrame);
  WebBrowser1->setAccessibleName(QTr("Help"));
  WebBrowser1->setOpenLinks(false);
  // The pages are printed matter, dark on white in every scheme.
  QPalette paper = WebBrowser1->palette();
  paper.setColor(QPalette::Base, Qt::white);
  paper.setColor(QPalette::Text, QColor(0x22, 0x26, 0x2e));
  WebBrowser1->setPalette(paper);
  setFocusProxy(WebBrowser1);
  connect(WebBrowser1, &QTextBrowser::anchorClicked, this, &frmHelp::Navigate);
  const auto shortcut = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  shortcut(QKeySequence::ZoomIn, [this] { WebBrowser1->zoomIn(); });
  shortcut(QKeySequence::ZoomOut, [this] { WebBrowser1->zoomOut(); });
  resize(kFirstSize);
  ShowPage(QUrl::fromLocalFile(QFile::decodeName(page.c_str())));
}

void frmHelp::resizeEvent(QResizeEvent* event) {
  WebBrowser1->setGeometry(QRect(QPoint(), event->size()));
}

void frmHelp::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void frmHelp::Navigate(const QUrl& address) {
  const QUrl target = WebBrowser1->source().resolved(address);
  const QString suffix = QFileInfo(target.path()).suffix().toLower();
  const bool page = suffix == QLatin1String("htm") || suffix == QLatin1String("html");
  if (target.isLocalFile() && page) {
    ShowPage(target);
  } else {
    const QByteArray document =
        target.isLocalFile() ? QFile::encodeName(target.toLocalFile()) : target.toEncoded();
    shell_.ShellOpenDocument(document.toStdString(), "", "", "open");
  }
}

void frmHelp::ShowPage(const QUrl& page) {
  if (QFileInfo(page.toLocalFile()).isFile()) {
    WebBrowser1->setSource(page);
  } else {
    WebBrowser1->setPlainText(QTr("The help page is missing:\n%1").arg(page.toLocalFile()));
  }
}

}  // namespace kv
