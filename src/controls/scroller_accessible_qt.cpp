#include "controls/scroller_accessible_qt.h"

#include "controls/scroller.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace kv {

namespace {

class ScrollerAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit ScrollerAccessible(Scroller* scroller)
      : QAccessibleWidget(scroller, QAccessible::Slider) {}

  QString text(QAccessible::Text what) const override {
    if (what == QAccessible::Value) return Slider().SpokenValue();
    // A tool that speaks no values of its own form speaks this.
    if (what == QAccessible::Description && Slider().spoken) return Slider().SpokenValue();
    QString text = QAccessibleWidget::text(what);
    if (what == QAccessible::Name && text.isEmpty()) {
      text = QString::fromStdString(Model().Properties().caption);
      if (text.isEmpty()) text = widget()->toolTip();
    }
    return text;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QVariant currentValue() const override { return Model().Value(); }
  QVariant maximumValue() const override { return Model().Max(); }
  QVariant minimumValue() const override { return Model().Min(); }
  QVariant minimumStepSize() const override { return Slider().key_step; }

  // A change from here is a finished one, as a pick in the menu is.
  void setCurrentValue(const QVariant& value) override {
    if (widget()->isEnabled()) Model().SetAndFinish(value.toDouble());
  }

  QStringList actionNames() const override {
    if (!widget()->isEnabled()) return {};
    return QStringList{increaseAction(), decreaseAction()} + QAccessibleWidget::actionNames();
  }

  void doAction(const QString& action) override {
    if (!widget()->isEnabled()) return;
    if (action == increaseAction()) {
      Slider().Step(1);
    } else if (action == decreaseAction()) {
      Slider().Step(-1);
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 private:
  Scroller& Slider() const { return *static_cast<Scroller*>(widget()); }
  ScrollerModel& Model() const { return Slider().Model(); }
};

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* scroller = qobject_cast<Scroller*>(object);
  return scroller != nullptr ? new ScrollerAccessible(scroller) : nullptr;
}

}  // namespace

void InstallScrollerAccessibility() {
  QAccessible::installFactory(&MakeAccessible);
}

}  // namespace kv
