// The rows of the playlist as an item model: a thin view of `ListRows`, which holds everything.
//
// It keeps nothing itself and passes on each change as it comes, so a row that changes costs the
// window that row alone. Rows here count from 0, in `ListRows` and the signals from 1. Owned by
// `frmPlaylist`; interface thread only.
#pragma once

#include "playlist/list_rows.h"

#include <QAbstractTableModel>
#include <QString>

namespace kv {

class RowsModel : public QAbstractTableModel, private RowsObserver {
  Q_OBJECT

 public:
  // What the delegate asks for beside the text.
  enum Role { kIconRole = Qt::UserRole, kPlayingRole };

  // Becomes the observer of `rows`, which must outlive it.
  RowsModel(ListRows& rows, QObject* parent);
  ~RowsModel() override { Detach(); }
  RowsModel(const RowsModel&) = delete;
  RowsModel& operator=(const RowsModel&) = delete;

  // Follows the rows no longer: from now on there are none.
  void Detach();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 Q_SIGNALS:
  void SelectionChangedInRows(int first, int last);
  void SelectionMovedInRows(int first, int last, int step);
  void RowWanted(int row);  // is to come into sight
  void StatusTextChanged(const QString& text);

 private:
  // RowsObserver
  void BeforeReset() override { beginResetModel(); }
  void RowsReset() override { endResetModel(); }
  void BeforeInsert(int first, int last) override { beginInsertRows({}, first - 1, last - 1); }
  void RowsInserted(int /*first*/, int /*last*/) override { endInsertRows(); }
  void BeforeRemove(int first, int last) override { beginRemoveRows({}, first - 1, last - 1); }
  void RowsRemoved(int /*first*/, int /*last*/) override { endRemoveRows(); }
  void RowsChanged(int first, int last) override;
  void SelectionChanged(int first, int last) override {
    Q_EMIT SelectionChangedInRows(first, last);
  }
  void SelectionMoved(int first, int last, int step) override {
    Q_EMIT SelectionMovedInRows(first, last, step);
  }
  void EnsureVisible(int row) override { Q_EMIT RowWanted(row); }
  void StatusText(const std::string& text) override;

  ListRows& rows_;
  bool attached_ = true;
};

}  // namespace kv
