#include "controls/accessible_qt.h"

#include "controls/color_select.h"
#include "controls/file_copier_bar.h"
#include "controls/line3d.h"
#include "controls/scroller_accessible_qt.h"
#include "controls/smart_button.h"
#include "controls/trend_chart_widget.h"

#include <QAction>
#include <QDialog>
#include <QList>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace kv {

// --- Parts

QString AccessibleText::text(QAccessible::Text what) const {
  QString shown = parts_.text();
  if (what == QAccessible::Value) return shown;
  QString text = QAccessibleWidget::text(what);
  if (what != QAccessible::Name) return text;
  if (text.isEmpty() || shown.isEmpty()) return text + shown;
  return text + QLatin1String(": ") + shown;
}

QAccessible::Role AccessibleText::role() const {
  return CanPress() ? QAccessible::Link : QAccessibleWidget::role();
}

QStringList AccessibleText::actionNames() const {
  QStringList names = QAccessibleWidget::actionNames();
  if (CanPress()) names.prepend(pressAction());
  return names;
}

void AccessibleText::doAction(const QString& action) {
  if (action == pressAction() && CanPress()) {
    // What it opens may pump, and the tool waits for an answer.
    QMetaObject::invokeMethod(widget(), parts_.press, Qt::QueuedConnection);
  } else {
    QAccessibleWidget::doAction(action);
  }
}

QString AccessibleReading::text(QAccessible::Text what) const {
  if (what == QAccessible::Value || what == QAccessible::Description) return read_().spoken;
  return QAccessibleWidget::text(what);
}

void* AccessibleReading::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

ValueAnnouncer::ValueAnnouncer(QWidget& widget, std::function<QVariant()> value)
    : widget_(widget), value_(std::move(value)) {}

void ValueAnnouncer::Changed() {
  if (!QAccessible::isActive()) return;
  if (timer_ == nullptr) {
    timer_ = std::make_unique<QTimer>();
    timer_->setSingleShot(true);
    timer_->setInterval(kInterval);
    QObject::connect(timer_.get(), &QTimer::timeout, &widget_, [this] {
      if (std::exchange(late_, false)) Tell();
    });
  }
  if (timer_->isActive()) {
    late_ = true;
  } else {
    Tell();
  }
}

void ValueAnnouncer::Tell() {
  QAccessibleValueChangeEvent changed(&widget_, value_());
  QAccessible::updateAccessibility(&changed);
  timer_->start();
}

void AnnounceChange(QWidget& widget, QAccessible::Event what) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent changed(&widget, what);
  QAccessible::updateAccessibility(&changed);
}

// --- The controls

namespace {

// A button that also says which of its states it shows.
class ButtonAccessible : public QAccessibleWidget {
 public:
  explicit ButtonAccessible(SmartButton* button)
      : QAccessibleWidget(button, QAccessible::Button), button_(*button) {}

  QString text(QAccessible::Text what) const override {
    if (what == QAccessible::Value) return button_.StateText();
    if (what != QAccessible::Description) return QAccessibleWidget::text(what);
    if (!button_.StateText().isEmpty()) return button_.StateText();
    // A tooltip that only repeats the name is not said twice.
    const QString text = QAccessibleWidget::text(what);
    return text == QAccessibleWidget::text(QAccessible::Name) ? QString() : text;
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = button_.isDown();
    state.checkable = !button_.StateText().isEmpty();
    state.checked = button_.StateOn();
    return state;
  }

  QStringList actionNames() const override {
    return button_.isEnabled() ? QStringList{pressAction()} + QAccessibleWidget::actionNames()
                               : QStringList();
  }

  void doAction(const QString& action) override {
    if (action == pressAction()) {
      button_.animateClick();  // later: what it does may pump, and the tool waits for an answer
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 private:
  SmartButton& button_;
};

class ColorSelectAccessible : public QAccessibleWidget {
 public:
  explicit ColorSelectAccessible(pucColorSelect* select)
      : QAccessibleWidget(select, QAccessible::ColorChooser), select_(*select) {}

  QString text(QAccessible::Text what) const override {
    if (what == QAccessible::Name && select_.accessibleName().isEmpty()) {
      return QString::fromStdString(select_.Properties().Caption).remove(QLatin1Char('&'));
    }
    if (what == QAccessible::Value || what == QAccessible::Description) return select_.ShownName();
    return QAccessibleWidget::text(what);
  }

 private:
  pucColorSelect& select_;
};

AccessibleReading::Reading ReadChart(const TrendChart& chart) {
  const TrendChartProperties& properties = chart.Model().Properties();
  return {properties.Value, properties.Min, properties.Max,
          QString::number(properties.Value, 'f', 0)};
}

AccessibleReading::Reading ReadBar(const FileCopierBar& bar) {
  return {static_cast<double>(std::clamp(bar.Percent(), 0, 100)), 0.0, 100.0, bar.Caption()};
}

// A window with the menus that are open over it, which the toolkit leaves out of the tree.
class WindowAccessible : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  int childCount() const override {
    return QAccessibleWidget::childCount() + static_cast<int>(Menus().size());
  }

  QAccessibleInterface* child(int index) const override {
    const int own = QAccessibleWidget::childCount();
    if (index < own) return QAccessibleWidget::child(index);
    return QAccessible::queryAccessibleInterface(Menus().value(index - own));
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto menu =
        child != nullptr ? Menus().indexOf(qobject_cast<QMenu*>(child->object())) : -1;
    if (menu < 0) return QAccessibleWidget::indexOfChild(child);
    return QAccessibleWidget::childCount() + static_cast<int>(menu);
  }

 private:
  // Without those that an entry of another open one leads to.
  QList<QMenu*> Menus() const {
    QList<QMenu*> menus = widget()->findChildren<QMenu*>(Qt::FindDirectChildrenOnly);
    const auto is_open = [](QObject* object) {
      const auto* const above = qobject_cast<QMenu*>(object);
      return above != nullptr && above->isVisible();
    };
    menus.removeIf([&](const QMenu* menu) {
      const QList<QObject*> above = menu->menuAction()->associatedObjects();
      return !menu->isVisible() || std::any_of(above.begin(), above.end(), is_open);
    });
    return menus;
  }
};

// A window of ours that is none of the toolkit's own kinds.
QAccessibleInterface* MakeWindow(const QString& class_name, QObject* object) {
  auto* const window = qobject_cast<QWidget*>(object);
  if (window == nullptr || !window->isWindow() ||
      !class_name.startsWith(QLatin1String("kv::frm")) ||
      qobject_cast<QDialog*>(window) != nullptr) {
    return nullptr;
  }
  const bool dialog = window->windowType() == Qt::Dialog;
  return new WindowAccessible(window, dialog ? QAccessible::Dialog : QAccessible::Window);
}

QAccessibleInterface* MakeAccessible(const QString& class_name, QObject* object) {
  if (QAccessibleInterface* const window = MakeWindow(class_name, object)) return window;
  if (auto* button = qobject_cast<SmartButton*>(object)) return new ButtonAccessible(button);
  if (auto* line = qobject_cast<line3d*>(object)) {
    return new QAccessibleWidget(line, QAccessible::Separator);
  }
  if (auto* select = qobject_cast<pucColorSelect*>(object)) {
    return new ColorSelectAccessible(select);
  }
  if (auto* chart = qobject_cast<TrendChart*>(object)) {
    return new AccessibleReading(chart, QAccessible::Chart, [chart] { return ReadChart(*chart); });
  }
  if (auto* bar = qobject_cast<FileCopierBar*>(object)) {
    return new AccessibleReading(bar, QAccessible::ProgressBar, [bar] { return ReadBar(*bar); });
  }
  return nullptr;
}

}  // namespace

void InstallControlsAccessibility() {
  InstallScrollerAccessibility();
  QAccessible::installFactory(&MakeAccessible);
}

}  // namespace kv
