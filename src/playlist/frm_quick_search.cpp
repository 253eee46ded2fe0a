#include "playlist/frm_quick_search.h"

#include "playlist/window_place_qt.h"
#include "system/shown_text.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>

namespace kv {
namespace {

constexpr QSize kSize(440, 360);
constexpr int kMargin = 10;
constexpr int kSpacing = 8;
constexpr int kCheckMilliseconds = 100;
constexpr std::size_t kLongestLine = 1000;  // characters that are shown

// A caret counts UTF-16 units here and characters in the rules.
int CaretIn(const QString& text, int characters) {
  qsizetype at = 0;
  for (; characters > 0 && at < text.size(); --characters) {
    at += text.at(at).isHighSurrogate() && at + 1 < text.size() ? 2 : 1;
  }
  return static_cast<int>(at);
}

}  // namespace

int FoundLines::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(search_.Lines().size());
}

QVariant FoundLines::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid() || index.row() >= rowCount()) return {};
  return ToQString(ShownText(search_.Lines()[static_cast<std::size_t>(index.row())], kLongestLine));
}

frmQuickSearch::frmQuickSearch(QuickSearch& search, TimerSource& timers, const QPalette& colors,
                               QWidget* owner)
    : QWidget(owner, Qt::Dialog),
      search_(search),
      Text1_(new QLineEdit(this)),
      List1_(new QListView(this)),
      note_(new QLabel(QTr("Searching filenames only! To search Tags as well, you must "
                           "open the playlist."),
                       this)),
      lines_(new FoundLines(search, this)),
      CheckPlaylistIsOpen_(timers.MakeTimer(TimerKind::kOrdinary, kCheckMilliseconds,
                                            [this] { CheckPlaylistIsOpen(); })) {
  setObjectName(QStringLiteral("frmQuickSearch"));
  setPalette(colors);
  setWindowTitle(QTr("Kestrelview - Quick Search"));
  Text1_->setAccessibleName(QTr("Search for"));
  Text1_->setPlaceholderText(QTr("*part of a name*"));
  List1_->setAccessibleName(QTr("Found"));
  List1_->setUniformItemSizes(true);
  List1_->setSpacing(1);
  List1_->setTextElideMode(Qt::ElideRight);
  List1_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  List1_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  List1_->setModel(lines_);
  note_->setWordWrap(true);
  auto* const page = new QVBoxLayout(this);
  page->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  page->setSpacing(kSpacing);
  page->addWidget(Text1_);
  page->addWidget(List1_, 1);
  page->addWidget(note_);

  Text1_->installEventFilter(this);
  List1_->installEventFilter(this);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
          &frmQuickSearch::Form_Unload);
  // When the click itself is over: a jump may end with this window.
  connect(List1_, &QListView::doubleClicked, this, &frmQuickSearch::List1_DblClick,
          Qt::QueuedConnection);
}

void frmQuickSearch::Form_Load() {
  lines_->BeginChange();
  const QuickSearch::Start start = search_.Form_Load();
  lines_->EndChange();
  const QString text = ToQString(start.text);
  Text1_->setText(text);
  Text1_->setCursorPosition(CaretIn(text, start.caret));
  connect(Text1_, &QLineEdit::textChanged, this, &frmQuickSearch::Text1_Change);
  List1_->setCurrentIndex(lines_->index(0));
  CheckPlaylistIsOpen();
  const QRect place = PlaceBeside(parentWidget(), kSize);
  resize(place.size());
  move(place.topLeft());
  Text1_->setFocus();
  show();
  activateWindow();
  CheckPlaylistIsOpen_->SetEnabled(true);
}

void frmQuickSearch::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  CheckPlaylistIsOpen_->SetEnabled(false);
  lines_->BeginChange();
  search_.Form_Unload(FromQString(Text1_->text()));
  lines_->EndChange();
  hide();
  deleteLater();
}

void frmQuickSearch::closeEvent(QCloseEvent* event) {
  Form_Unload();
  event->accept();
}

bool frmQuickSearch::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<const QKeyEvent*>(event)->key();
    if (watched == Text1_ && Text1_KeyDown(key)) return true;
    if (watched == List1_ && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
      QMetaObject::invokeMethod(this, &frmQuickSearch::List1_DblClick, Qt::QueuedConnection);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void frmQuickSearch::Text1_Change(const QString& text) {
  lines_->BeginChange();
  search_.Text1_Change(FromQString(text));
  lines_->EndChange();
  List1_->setCurrentIndex(lines_->index(0));  // what Enter means
}

bool frmQuickSearch::Text1_KeyDown(int key) {
  switch (key) {
    case Qt::Key_Down:
      List1_->setFocus();
      List1_->setCurrentIndex(lines_->index(std::max(search_.LineForDown(), 0)));
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      List1_->setFocus();
      QMetaObject::invokeMethod(this, &frmQuickSearch::List1_DblClick, Qt::QueuedConnection);
      return true;
    default:
      return false;
  }
}

void frmQuickSearch::List1_DblClick() {
  if (unloaded_) return;
  const QPointer<frmQuickSearch> self(this);
  if (search_.List1_DblClick(List1_->currentIndex().row()) && self != nullptr) Form_Unload();
}

void frmQuickSearch::CheckPlaylistIsOpen() {
  note_->setVisible(search_.NoteVisible());
}

}  // namespace kv
