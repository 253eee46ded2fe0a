// The desktop's own file dialogs, by its portal (org.freedesktop.portal.FileChooser).
//
// The dialog is another program's window. While it is open this program's windows take no input,
// and it goes when its question does: with its owner, or with the program. Owned by `DialogsQt`;
// interface thread only. A call is modal, like that of any dialog.
#pragma once

#include <QDBusConnection>
#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <string>

namespace kv {

struct PortalFileGroup {
  QString label;
  QStringList patterns;
};

struct PortalFileQuestion {
  enum class Kind { kOpen, kSave, kFolder };
  Kind kind = Kind::kOpen;
  QString title;
  QList<PortalFileGroup> groups;
  QString group;          // label of the one that is shown first; empty: the first
  std::string folder;     // to begin in; empty: the desktop's choice
  std::string file_name;  // a name that is offered
};

struct PortalFileAnswer {
  enum class Kind { kNone, kCancelled, kChosen };  // kNone: nobody has asked the user
  Kind kind = Kind::kNone;
  std::string path;  // byte for byte
  QString group;     // label of the one that was shown last
};

class PortalFileDialog {
 public:
  explicit PortalFileDialog(const QDBusConnection& bus) : bus_(bus) {}

  // `owner` may be null, and may be destroyed meanwhile: then the answer is a cancelled one.
  PortalFileAnswer Ask(const PortalFileQuestion& question, QWidget* owner);

 private:
  QDBusConnection bus_;
  bool silent_ = false;  // it did not answer once, and is asked no more
};

}  // namespace kv
