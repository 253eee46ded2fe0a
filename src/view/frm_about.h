// `frmAbout`: name, version and the addresses that belong to the player. Modal; made for one use.
#pragma once

#include "system/shell_services.h"

#include <QDialog>
#include <QPalette>
#include <QString>

namespace kv {

struct AboutVersion {
  int major = 0;
  int minor = 0;
  int revision = 0;
};

class frmAbout : public QDialog {
  Q_OBJECT

 public:
  // `logo` is a drawing (see svg_face_qt.h), left out when it cannot be read. `shell` opens the
  // addresses and must outlive the window. Shown by exec().
  frmAbout(const AboutVersion& version, const QString& logo, ShellServices& shell,
           const QPalette& colors, QWidget* parent);
};

}  // namespace kv
