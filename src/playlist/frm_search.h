// `frmSearch`: asks what to look for in the playlist, and in which columns. Modal; the rules are
// those of list_search.h. Owned by `frmPlaylist`; interface thread only.
#pragma once

#include "playlist/list_search.h"

#include <QDialog>
#include <QLineEdit>
#include <QListWidget>

namespace kv {

class frmSearch : public QDialog {
  Q_OBJECT

 public:
  // `search` must outlive the dialog.
  frmSearch(ListSearch& search, QWidget* owner);

  // Any end but Search is Cancel.
  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void FillList1();
  void Command1_Click();

  ListSearch& search_;
  QLineEdit* Text1_;
  QListWidget* List1_;
};

}  // namespace kv
