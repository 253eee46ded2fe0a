// The keyboard in the strip of controls: Tab walks over them, Ctrl+Space presses the one that it
// has come to, Up and Down step a slider.
//
// All other keys go on to the form as if the focus had never left it: none that means something in
// the player means something else here. Owned by the panel; interface thread only.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class QKeyEvent;

namespace kv {

class PanelKeys : public QObject {
  Q_OBJECT

 public:
  // `panel` owns this object, `form` gets the keys.
  PanelKeys(QWidget& panel, QWidget& form) : QObject(&panel), panel_(panel), form_(form) {}

  // Watches a control that Tab is to reach.
  void Add(QWidget& control);

  // Tab has brought the focus to one of them, which still can be seen.
  bool HoldFocus() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static bool Act(QWidget& control, const QKeyEvent& key);

  QWidget& panel_;
  QWidget& form_;
};

}  // namespace kv
