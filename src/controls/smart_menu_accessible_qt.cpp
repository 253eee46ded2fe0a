#include "controls/smart_menu_accessible_qt.h"

#include "controls/smart_menu_style_qt.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QAction>
#include <QApplication>
#include <QMenu>

namespace kv {
namespace {

QMenu* MenuOf(const QAction& action) {
  for (QObject* const object : action.associatedObjects()) {
    auto* const menu = qobject_cast<QMenu*>(object);
    if (menu != nullptr && qobject_cast<SmartMenuStyle*>(menu->style()) != nullptr) return menu;
  }
  return nullptr;
}

// "&&" is one; a single one marks a letter.
QString WithoutMarks(const QString& caption) {
  QString plain;
  for (qsizetype at = 0; at < caption.size(); ++at) {
    if (caption.at(at) == QLatin1Char('&') && ++at >= caption.size()) break;
    plain += caption.at(at);
  }
  return plain;
}

// Both live as long as the entry: the toolkit forgets a description with its object.
class MenuItemAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  MenuItemAccessible(QAction* action, QMenu* menu) : action_(action), menu_(menu) {}

  bool isValid() const override { return MenuOf(*action_) == menu_; }
  QObject* object() const override { return action_; }
  QWindow* window() const override { return menu_->windowHandle(); }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(menu_);
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    QAccessibleInterface* const below = child(0);
    return below != nullptr && below->rect().contains(x, y) ? below : nullptr;
  }
  int childCount() const override { return action_->menu() != nullptr ? 1 : 0; }
  QAccessibleInterface* child(int index) const override {
    return index == 0 ? QAccessible::queryAccessibleInterface(action_->menu()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child != nullptr && childCount() > 0 && child->object() == action_->menu() ? 0 : -1;
  }

  QString text(QAccessible::Text what) const override {
    if (action_->isSeparator()) return {};
    if (what == QAccessible::Name) return WithoutMarks(action_->text().section(u'\t', 0, 0));
    if (what == QAccessible::Accelerator) return action_->text().section(u'\t', 1);
    return {};
  }
  void setText(QAccessible::Text /*what*/, const QString& /*text*/) override {}

  QRect rect() const override {
    if (!menu_->isVisible()) return {};
    const QRect place = menu_->actionGeometry(action_);
    return {menu_->mapToGlobal(place.topLeft()), place.size()};
  }

  QAccessible::Role role() const override {
    return action_->isSeparator() ? QAccessible::Separator : QAccessible::MenuItem;
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    state.disabled = !action_->isEnabled();
    state.invisible = !action_->isVisible() || !menu_->isVisible();
    if (action_->isSeparator()) return state;
    state.focusable = true;
    state.focused = menu_->isVisible() && menu_->activeAction() == action_;
    state.hasPopup = action_->menu() != nullptr;
    state.checkable = action_->isCheckable();
    state.checked = action_->isChecked();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
  }

  QStringList actionNames() const override {
    if (action_->isSeparator() || !action_->isEnabled()) return {};
    return {action_->menu() != nullptr ? showMenuAction() : pressAction()};
  }

  QStringList keyBindingsForAction(const QString& name) const override {
    const QString keys = text(QAccessible::Accelerator);
    return name == pressAction() && !keys.isEmpty() ? QStringList{keys} : QStringList();
  }

  void doAction(const QString& name) override {
    if (!actionNames().contains(name)) return;
    if (name == showMenuAction()) {
      menu_->setActiveAction(action_);
      return;
    }
    // Later, for what it does may pump while the tool waits for an answer; and as a click does,
    // with the menu gone.
    QMetaObject::invokeMethod(
        action_,
        [action = action_] {
          while (QWidget* const popup = QApplication::activePopupWidget()) {
            if (!popup->close()) break;
          }
          action->trigger();
        },
        Qt::QueuedConnection);
  }

 private:
  QAction* action_;
  QMenu* menu_;
};

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* const action = qobject_cast<QAction*>(object);
  if (action == nullptr) return nullptr;
  QMenu* const menu = MenuOf(*action);
  return menu != nullptr ? new MenuItemAccessible(action, menu) : nullptr;
}

}  // namespace

void InstallMenuAccessibility() {
  QAccessible::installFactory(&MakeAccessible);
}

}  // namespace kv
