#include "controls/smart_menu.h"

#include "controls/smart_menu_style_qt.h"

#include <QAction>
#include <QPointer>

#include <utility>

namespace kv {
namespace {

// A tab would begin the accelerator, a line break a second line.
QString OneLine(QString text) {
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control) character = QLatin1Char(' ');
  }
  return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString TextOf(const SmartMenuItem& item) {
  const QString caption = OneLine(item.caption);
  return item.accelerator.isEmpty() ? caption : caption + QLatin1Char('\t') + item.accelerator;
}

}  // namespace

SmartMenu::SmartMenu(SmartMenuSource& source, std::function<QIcon(const std::string&)> icons,
                     QWidget* form)
    : source_(source), icons_(std::move(icons)), form_(form), style_(new SmartMenuStyle) {
  style_->setParent(this);
}

SmartMenu::~SmartMenu() {
  for (const auto& [id, menu] : menus_) delete menu.data();
}

void SmartMenu::SetColors(const SmartMenuColors& colors) {
  style_->SetColors(colors);
  for (const auto& [id, menu] : menus_) {
    if (menu) menu->update();
  }
}

void SmartMenu::ItemChanged(int id) {
  const auto action = actions_.find(id);
  if (action == actions_.end() || !action->second) return;
  for (const SmartMenuItem& item : source_.MenuItems()) {
    if (item.id == id) Apply(*action->second, item);
  }
}

QMenu* SmartMenu::Widget(int root) {
  if (stale_ && !open_) Build();
  const auto menu = menus_.find(root);
  return menu == menus_.end() ? nullptr : menu->second.data();
}

void SmartMenu::PopUp(int root, QPoint position) {
  if (open_) return;
  const QPointer<QMenu> menu = Widget(root);
  if (!menu) return;
  const QPointer<SmartMenu> self(this);
  open_ = true;
  menu->exec(position);
  if (self) open_ = false;
}

void SmartMenu::Close() {
  for (const auto& [id, menu] : menus_) {
    if (menu) menu->close();
  }
}

void SmartMenu::Build() {
  for (const auto& [id, menu] : menus_) delete menu.data();
  menus_.clear();
  actions_.clear();
  stale_ = false;
  const std::vector<SmartMenuItem> items = source_.MenuItems();
  for (const SmartMenuItem& item : items) {
    if (menus_.contains(item.parent)) continue;
    auto* const menu = new QMenu(form_);
    menu->setStyle(style_);
    menu->setToolTipsVisible(false);
    menus_.emplace(item.parent, menu);
  }
  for (const SmartMenuItem& item : items) {
    AddItem(*menus_.at(item.parent), item);
  }
}

void SmartMenu::AddItem(QMenu& menu, const SmartMenuItem& item) {
  auto* const action = new QAction(&menu);
  actions_.emplace(item.id, action);
  action->setSeparator(item.type == SmartMenuItem::Type::kSeparator);
  action->setCheckable(item.type == SmartMenuItem::Type::kCheck);
  action->setData(item.id);
  action->setMenuRole(QAction::NoRole);
  if (!item.icon.empty()) {
    action->setIcon(icons_(item.icon));
    action->setIconVisibleInMenu(true);
  }
  Apply(*action, item);
  if (const auto sub_menu = menus_.find(item.id); sub_menu != menus_.end()) {
    action->setMenu(sub_menu->second.data());
    sub_menu->second->setAccessibleName(item.caption);
  } else {
    connect(action, &QAction::triggered, this, [this, action] { Clicked(*action); });
  }
  menu.addAction(action);
}

void SmartMenu::Apply(QAction& action, const SmartMenuItem& item) {
  action.setText(TextOf(item));
  if (item.type == SmartMenuItem::Type::kCheck) action.setChecked(item.checked);
  action.setEnabled(item.enabled);
  action.setVisible(item.visible);
}

void SmartMenu::Clicked(const QAction& action) {
  const int id = action.data().toInt();
  if (action.isCheckable()) source_.SetMenuItemChecked(id, action.isChecked());
  if (on_click) on_click(id);
}

}  // namespace kv
