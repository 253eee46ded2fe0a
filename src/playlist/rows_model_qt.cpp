#include "playlist/rows_model_qt.h"

#include "system/shown_text.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <cstddef>

namespace kv {
namespace {

constexpr std::size_t kLongestCell = 1000;  // characters that are shown

}  // namespace

RowsModel::RowsModel(ListRows& rows, QObject* parent) : QAbstractTableModel(parent), rows_(rows) {
  rows_.SetObserver(this);
}

void RowsModel::Detach() {
  if (!attached_) return;
  rows_.SetObserver(nullptr);
  beginResetModel();
  attached_ = false;
  endResetModel();
}

int RowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !attached_ ? 0 : rows_.RowCount();
}

int RowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kPlaylistColumns);
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  if (!attached_ || !index.isValid()) return {};
  const int row = index.row() + 1;
  switch (role) {
    case Qt::DisplayRole:
      if (index.column() == 0) return ToQString(rows_.NumberText(row));
      return ToQString(ShownText(rows_.SubItem(row, index.column()), kLongestCell));
    case Qt::TextAlignmentRole:
      return headerData(index.column(), Qt::Horizontal, role);
    case Qt::AccessibleDescriptionRole:
      return rows_.IsMarked(row) ? QTr("Playing") : QString();
    case kIconRole:
      return static_cast<int>(rows_.Icon(row));
    case kPlayingRole:
      return rows_.IsMarked(row);
    default:
      return {};
  }
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const PlaylistColumnInfo& column = kPlaylistColumnTable[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return QTr(column.title);
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue((column.right_aligned ? Qt::AlignRight : Qt::AlignLeft) |
                               Qt::AlignVCenter);
  }
  return {};
}

void RowsModel::RowsChanged(int first, int last) {
  Q_EMIT dataChanged(index(first - 1, 0), index(last - 1, columnCount() - 1));
}

void RowsModel::StatusText(const std::string& text) {
  Q_EMIT StatusTextChanged(ToQString(text));
}

}  // namespace kv
