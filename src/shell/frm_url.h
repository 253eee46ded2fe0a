// `frmURL`, the Open URL dialog. Modal; made for one use.
#pragma once

#include "shell/url_entry.h"
#include "state/session.h"
#include "system/dialogs.h"
#include "system/registry.h"

#include <QDialog>
#include <QPalette>

#include <string>

class QLineEdit;

namespace kv {

class frmURL : public QDialog {
  Q_OBJECT

 public:
  // `dialogs` tells what cannot be played. All must outlive the window. Shown by exec().
  frmURL(Registry& registry, const Session& session, Dialogs& dialogs, const QPalette& colors,
         QWidget* parent);

  // What the user leaves; empty when cancelled.
  const std::string& UrlResult() const { return UrlResult_; }

 private:
  void Command1_Click();
  void Command2_Click();

  UrlEntry entry_;
  QLineEdit* Text1_;
  std::string UrlResult_;
};

}  // namespace kv
