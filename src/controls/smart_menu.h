// `SmartMenu`, the player's popup menu: keyed entries of its owner, drawn in the player's colours.
//
// The owner keeps the entries (SmartMenuSource); the widgets are made from them when the menu is
// asked for, and follow changes while it is open. Looks the same on every desktop. Owned by the
// form that it belongs to; interface thread only.
#pragma once

#include <QColor>
#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QString>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kv {

class SmartMenuStyle;

struct SmartMenuItem {
  enum class Type { kPlain, kCheck, kSeparator };

  int id = 0;
  int parent = 0;  // id of the entry whose submenu this stands in
  Type type = Type::kPlain;
  QString caption = {};      // "&" is just that
  QString accelerator = {};  // shown, and nothing more
  std::string icon = {};     // file, as the icon function knows it; empty for none
  bool checked = false;
  bool enabled = true;
  bool visible = true;
};

// The entries, held by the owner of the menu.
class SmartMenuSource {
 public:
  virtual ~SmartMenuSource() = default;
  // All of them in the order of the menu. An entry that others name as parent is a submenu.
  virtual std::vector<SmartMenuItem> MenuItems() const = 0;
  // The user has turned a check mark over.
  virtual void SetMenuItemChecked(int id, bool checked) = 0;
};

struct SmartMenuColors {
  QColor background;
  QColor text;
  QColor separator;
  QColor highlight;
  QColor highlight_border;
  QColor highlight_text;
  QColor disabled_text;  // shown faded towards the background
};

class SmartMenu : public QObject {
  Q_OBJECT

 public:
  // `source` must outlive the menu. `icons` gives the picture of a file, or none. `form` is the
  // window that the menu belongs to and may be null.
  SmartMenu(SmartMenuSource& source, std::function<QIcon(const std::string&)> icons, QWidget* form);
  ~SmartMenu() override;

  // Called with the entry that the user picks; a check entry has been turned over before.
  std::function<void(int id)> on_click;

  // A text that could not be read on its ground is shown black or white instead.
  void SetColors(const SmartMenuColors& colors);

  // The entries are other ones now. An open menu stays as it is until it is closed.
  void Rebuild() { stale_ = true; }

  // State or caption of one entry has changed; an open menu shows it at once.
  void ItemChanged(int id);

  // Shows the submenu of `root` at `position` of the desktop and returns when it is closed. Nothing
  // while it is open already, or when there are no such entries.
  void PopUp(int root, QPoint position);

  // Puts away what is open.
  void Close();

  // The widget of the submenu of `root`, made at need; null when nothing has it as parent. It lives
  // until entries that have changed are shown.
  QMenu* Widget(int root);

 private:
  void Build();
  void AddItem(QMenu& menu, const SmartMenuItem& item);
  void Apply(QAction& action, const SmartMenuItem& item);
  void Clicked(const QAction& action);

  SmartMenuSource& source_;
  std::function<QIcon(const std::string&)> icons_;
  QWidget* form_;
  SmartMenuStyle* style_;                 // a child of ours
  std::map<int, QPointer<QMenu>> menus_;  // by the id of the parent entry; the form may end first
  std::map<int, QPointer<QAction>> actions_;  // by id
  bool stale_ = true;
  bool open_ = false;
};

}  // namespace kv
