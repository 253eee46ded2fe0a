// `frmQuickSearch`: a small window that searches the playlist with every key and jumps to the line
// that is chosen. Not modal; the rules are those of quick_search.h.
//
// Makes itself open by Form_Load() and deletes itself when it is closed; `QuickSearchOpen` is true
// in between. Interface thread only.
#pragma once

#include "playlist/quick_search.h"
#include "system/timers.h"

#include <QAbstractListModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPalette>
#include <QWidget>

#include <memory>

namespace kv {

// The lines found, read where they are. A new search replaces them all.
class FoundLines : public QAbstractListModel {
  Q_OBJECT

 public:
  FoundLines(const QuickSearch& search, QObject* parent)
      : QAbstractListModel(parent), search_(search) {}

  // Before and after the lines change.
  void BeginChange() { beginResetModel(); }
  void EndChange() { endResetModel(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  const QuickSearch& search_;
};

class frmQuickSearch : public QWidget {
  Q_OBJECT

 public:
  // `search` and `timers` must outlive the window. `owner` is the main window, beside which it
  // comes up. `colors` as PaletteOf() in playlist_look_qt.h makes them.
  frmQuickSearch(QuickSearch& search, TimerSource& timers, const QPalette& colors, QWidget* owner);

  void Form_Load();
  // Remembers the text and goes.
  void Form_Unload();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Text1_Change(const QString& text);
  bool Text1_KeyDown(int key);
  void List1_DblClick();
  void CheckPlaylistIsOpen();

  QuickSearch& search_;
  QLineEdit* Text1_;
  QListView* List1_;
  QLabel* note_;
  FoundLines* lines_;
  std::unique_ptr<Timer> CheckPlaylistIsOpen_;
  bool unloaded_ = false;
};

}  // namespace kv
