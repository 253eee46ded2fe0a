#include "playlist/playlist_view.h"

#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace kv {
namespace {

constexpr int kTwips = 15;  // to a pixel
constexpr int kNarrowest = 24;
constexpr int kWidest = 4000;
constexpr int kManyRows = 256;  // that change their selection at once
constexpr const char* kUriList = "text/uri-list";

constexpr std::array<int, 8> kMovingKeys = {Qt::Key_Up,       Qt::Key_Down, Qt::Key_PageUp,
                                            Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End,
                                            Qt::Key_Left,     Qt::Key_Right};

std::string_view BytesOf(const QByteArray& bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

DroppedMedia ReadDrop(const QMimeData& data) {
  if (data.hasFormat(QLatin1String(kUriList))) {
    DroppedMedia media = ReadUriList(BytesOf(data.data(QLatin1String(kUriList))));
    if (!media.Empty()) return media;
  }
  return ReadDroppedText(data.text().toStdString());
}

bool TakesDrop(const QDropEvent& event) {
  return (event.possibleActions() & Qt::CopyAction) != 0 &&
         (event.mimeData()->hasFormat(QLatin1String(kUriList)) || event.mimeData()->hasText());
}

void AcceptCopy(QDropEvent* event) {
  if (TakesDrop(*event)) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
  } else {
    event->ignore();
  }
}

}  // namespace

PlaylistView::PlaylistView(ListRows& rows, RowsModel& model, RowDelegate::ArtFile art,
                           QWidget* parent)
    : QTableView(parent),
      rows_(rows),
      model_(model),
      delegate_(new RowDelegate(std::move(art), *this)),
      header_(new ColumnsHeader(this)) {
  setObjectName(QStringLiteral("pList"));
  setAccessibleName(QTr("Playlist"));
  setHorizontalHeader(header_);
  setModel(&model);
  setItemDelegate(delegate_);
  setFrameShape(NoFrame);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setEditTriggers(NoEditTriggers);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  setAcceptDrops(true);
  QFont font = this->font();
  font.setFamilies(QStringList{QStringLiteral("Tahoma"), font.family()});
  setFont(font);
  SetUpHeader();
  connect(&model_, &RowsModel::SelectionChangedInRows, this, &PlaylistView::FollowRows);
  connect(&model_, &RowsModel::SelectionMovedInRows, this, &PlaylistView::FollowMove);
  connect(&model_, &RowsModel::RowWanted, this, &PlaylistView::ShowRow);
  connect(&model_, &QAbstractItemModel::modelReset, this,
          [this] { FollowRows(1, model_.rowCount()); });
}

void PlaylistView::SetUpHeader() {
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(1);
  ApplyRowHeight();
  ColumnsHeader* const header = header_;
  header->setSectionsMovable(true);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setMinimumSectionSize(kNarrowest);
  header->setTextElideMode(Qt::ElideRight);
  header->setAccessibleName(QTr("Columns"));
  connect(header, &ColumnsHeader::ColumnChosen, this, &PlaylistView::ShowColumn);
  connect(header, &QHeaderView::sectionClicked, this,
          [this](int column) { Q_EMIT HeaderClicked(column + 1); });
}

void PlaylistView::ApplyRowHeight() {
  verticalHeader()->setDefaultSectionSize(delegate_->RowHeight());
}

void PlaylistView::SetLook(const PlaylistLook& look) {
  delegate_->SetLook(look);
  setPalette(PaletteOf(look));
  header_->setStyleSheet(HeaderStyle(look));
  header_->SetFocusColor(look.focus);
  viewport()->update();
}

void PlaylistView::LoadColumns(const Settings& settings) {
  QHeaderView* const header = horizontalHeader();
  const bool stored = settings.PlaylistColumnWidth[0] > 0;
  std::array<int, kPlaylistColumns> order{};
  for (std::size_t i = 0; i < kPlaylistColumns; ++i) {
    order[i] = static_cast<int>(i);
    double twips = settings.PlaylistColumnWidth[i];
    if (!stored || !(twips > 0)) {
      const PlaylistColumnInfo& column = kPlaylistColumnTable[i];
      const int needed = std::max(delegate_->WidthFor(ToQString(column.uncut), order[i]),
                                  delegate_->WidthFor(QTr(column.title), order[i]));
      twips = std::max(column.width, needed * kTwips);
    }
    const double pixels =
        std::clamp(std::round(twips / kTwips), double{kNarrowest}, double{kWidest});
    header->resizeSection(order[i], static_cast<int>(pixels));
  }
  if (!stored) return;
  // Sorted, so that positions that are no order of columns still give one.
  std::stable_sort(order.begin(), order.end(), [&settings](int a, int b) {
    return settings.PlaylistColumnPosition[static_cast<std::size_t>(a)] <
           settings.PlaylistColumnPosition[static_cast<std::size_t>(b)];
  });
  for (int place = 0; place < static_cast<int>(order.size()); ++place) {
    header->moveSection(header->visualIndex(order[static_cast<std::size_t>(place)]), place);
  }
}

void PlaylistView::StoreColumns(Settings& settings) const {
  const QHeaderView* const header = horizontalHeader();
  for (std::size_t i = 0; i < kPlaylistColumns; ++i) {
    const int column = static_cast<int>(i);
    settings.PlaylistColumnPosition[i] = header->visualIndex(column) + 1;
    settings.PlaylistColumnWidth[i] = header->sectionSize(column) * kTwips;
  }
}

void PlaylistView::LockRedraw(bool locked) {
  locks_ = std::max(locks_ + (locked ? 1 : -1), 0);
  setUpdatesEnabled(locks_ == 0);
}

int PlaylistView::SelectedRow() const {
  const int current = currentIndex().row() + 1;
  if (rows_.IsSelected(current)) return current;
  const std::vector<int> selected = rows_.SelectedRows();
  return selected.empty() ? 0 : selected.front();
}

void PlaylistView::scrollTo(const QModelIndex& index, ScrollHint hint) {
  // Rows come into sight; the columns stay where the user has put them.
  const int left = horizontalScrollBar()->value();
  QTableView::scrollTo(index, hint);
  horizontalScrollBar()->setValue(left);
}

void PlaylistView::ShowRow(int row) {
  scrollTo(model_.index(row - 1, 0));
}

void PlaylistView::ShowColumn(int column) {
  const int left = columnViewportPosition(column);
  const int beyond = left + columnWidth(column) - viewport()->width();
  QScrollBar* const bar = horizontalScrollBar();
  if (left < 0) {
    bar->setValue(bar->value() + left);
  } else if (beyond > 0) {
    bar->setValue(bar->value() + std::min(left, beyond));
  }
}

void PlaylistView::UpdateRows(int first, int last) {
  const int top = rowViewportPosition(first);
  const int bottom = rowViewportPosition(last) + rowHeight(last);
  viewport()->update(QRect(0, top, viewport()->width(), bottom - top) & viewport()->rect());
}

// The toolkit's own repaints the whole window whenever a row changes, in sight or not.
void PlaylistView::dataChanged(const QModelIndex& first, const QModelIndex& last,
                               const QList<int>& roles) {
  if (QAccessible::isActive()) {
    QTableView::dataChanged(first, last, roles);
  } else {
    UpdateRows(first.row(), last.row());
  }
}

void PlaylistView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  for (const QModelIndex& index : {current, previous}) {
    if (index.isValid()) UpdateRows(index.row(), index.row());
  }
}

void PlaylistView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  if (following_) return;
  following_ = true;
  for (const QItemSelectionRange& range : deselected) {
    rows_.SelectRange(range.top() + 1, range.bottom() + 1, false);
  }
  for (const QItemSelectionRange& range : selected) {
    rows_.SelectRange(range.top() + 1, range.bottom() + 1, true);
  }
  following_ = false;
}

void PlaylistView::FollowRows(int first, int last) {
  if (following_ || last < first || last > model_.rowCount()) return;
  // To take many rows out of the toolkit's selection costs the square of their gaps; to forget it
  // and begin again does not.
  const bool anew = last - first >= kManyRows;
  if (anew) {
    first = 1;
    last = model_.rowCount();
  }
  QItemSelection on;
  QItemSelection off;
  for (int begin = first; begin <= last;) {
    const bool selected = rows_.IsSelected(begin);
    int end = begin;
    while (end < last && rows_.IsSelected(end + 1) == selected) ++end;
    (selected ? on : off)
        .append({model_.index(begin - 1, 0), model_.index(end - 1, model_.columnCount() - 1)});
    begin = end + 1;
  }
  following_ = true;
  if (anew) {
    const QPersistentModelIndex current = currentIndex();
    selectionModel()->reset();
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selectionModel()->select(on, QItemSelectionModel::Select);
    viewport()->update();
  } else {
    selectionModel()->select(off, QItemSelectionModel::Deselect);
    selectionModel()->select(on, QItemSelectionModel::Select);
  }
  following_ = false;
  // The keys go on from a row that is selected.
  if (!on.isEmpty() && !rows_.IsSelected(currentIndex().row() + 1)) {
    selectionModel()->setCurrentIndex(model_.index(on.first().top(), 0),
                                      QItemSelectionModel::NoUpdate);
  }
}

// The row of the keys goes along when it is one of those that moved.
void PlaylistView::FollowMove(int first, int last, int step) {
  const QModelIndex to = currentIndex().siblingAtRow(currentIndex().row() + step);
  if (!following_ && selectionModel()->isRowSelected(currentIndex().row(), {}) && to.isValid()) {
    selectionModel()->setCurrentIndex(to, QItemSelectionModel::NoUpdate);
  }
  FollowRows(first, last);
}

QModelIndex PlaylistView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  const int last = model_.rowCount() - 1;
  if (last < 0) return {};
  const int column = std::max(currentIndex().column(), 0);
  switch (action) {
    case MoveHome:
      return model_.index(0, column);
    case MoveEnd:
      return model_.index(last, column);
    case MoveLeft:
    case MoveRight: {
      QScrollBar* const bar = horizontalScrollBar();
      bar->triggerAction(action == MoveLeft ? QScrollBar::SliderSingleStepSub
                                            : QScrollBar::SliderSingleStepAdd);
      return currentIndex();
    }
    default:
      return QTableView::moveCursor(action, modifiers);
  }
}

void PlaylistView::keyPressEvent(QKeyEvent* event) {
  const bool moves =
      std::find(kMovingKeys.begin(), kMovingKeys.end(), event->key()) != kMovingKeys.end();
  if (!moves && event->key() != Qt::Key_Space) {
    event->ignore();
    return;
  }
  const int before = currentIndex().row() + 1;
  QTableView::keyPressEvent(event);
  const int row = currentIndex().row() + 1;
  if (row != before) {
    rows_.ItemClick(row);
  } else if (event->modifiers() == Qt::NoModifier && rows_.SelectedRows().empty()) {
    rows_.SelectOnly(row);  // the row had the focus only
  }
}

void PlaylistView::mousePressEvent(QMouseEvent* event) {
  QTableView::mousePressEvent(event);
  const QModelIndex index = indexAt(event->position().toPoint());
  if (index.isValid()) rows_.ItemClick(index.row() + 1);
}

void PlaylistView::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  if (event->button() == Qt::RightButton) Q_EMIT MenuWanted(event->globalPosition().toPoint());
}

void PlaylistView::mouseDoubleClickEvent(QMouseEvent* event) {
  QTableView::mouseDoubleClickEvent(event);
  const bool on_row = indexAt(event->position().toPoint()).isValid();
  if (event->button() == Qt::LeftButton && on_row) Q_EMIT RowDoubleClicked();
}

void PlaylistView::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() == QContextMenuEvent::Mouse) return;  // the button's release brings it
  const QRect row = visualRect(currentIndex()) & viewport()->rect();
  Q_EMIT MenuWanted(viewport()->mapToGlobal(row.isEmpty() ? QPoint() : row.bottomLeft()));
}

void PlaylistView::wheelEvent(QWheelEvent* event) {
  QTableView::wheelEvent(event);
  event->accept();  // at the end of the list the wheel does not become the form's
}

void PlaylistView::dragEnterEvent(QDragEnterEvent* event) {
  AcceptCopy(event);
}

void PlaylistView::dragMoveEvent(QDragMoveEvent* event) {
  AcceptCopy(event);
}

void PlaylistView::dropEvent(QDropEvent* event) {
  AcceptCopy(event);
  if (!event->isAccepted()) return;
  const DroppedMedia media = ReadDrop(*event->mimeData());
  if (!media.Empty()) Q_EMIT MediaDropped(media);
}

void PlaylistView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange) ApplyRowHeight();
}

void PlaylistView::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  viewport()->update();
}

void PlaylistView::focusOutEvent(QFocusEvent* event) {
  QTableView::focusOutEvent(event);
  viewport()->update();
}

}  // namespace kv
