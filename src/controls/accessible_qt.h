// What assistive tools see of controls that draw themselves: the parts that their descriptions are
// made of, and the descriptions of the controls of this folder.
//
// The toolkit asks for a description only while an assistive tool runs. A factory of a room answers
// for its own widgets and leaves all others to the next one. Interface thread only.
#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <memory>

namespace kv {

// Tells the toolkit how to describe the controls of this folder. Safe to call again.
void InstallControlsAccessibility();

// A widget that shows a text: its name is what it is and what it says, "Title: Holiday", its value
// the text alone. With `press` it can be pressed, as a link is, while there is something to open.
class AccessibleText : public QAccessibleWidget {
 public:
  struct Parts {
    std::function<QString()> text;
    std::function<bool()> can_press;
    std::function<void()> press;
  };

  AccessibleText(QWidget* widget, Parts parts, QAccessible::Role role = QAccessible::StaticText)
      : QAccessibleWidget(widget, role), parts_(std::move(parts)) {}

  QString text(QAccessible::Text what) const override;
  QAccessible::Role role() const override;
  QStringList actionNames() const override;
  void doAction(const QString& action) override;

 private:
  bool CanPress() const { return parts_.can_press && parts_.can_press(); }

  Parts parts_;
};

// A widget that shows a number and does not take one: a meter, a chart, a bar of progress. It is
// asked, and never speaks up by itself: what moves all the time would drown everything else.
class AccessibleReading : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  struct Reading {
    double value = 0.0;
    double least = 0.0;
    double most = 0.0;
    QString spoken;  // with its unit
  };

  AccessibleReading(QWidget* widget, QAccessible::Role role, std::function<Reading()> read)
      : QAccessibleWidget(widget, role), read_(std::move(read)) {}

  QString text(QAccessible::Text what) const override;
  void* interface_cast(QAccessible::InterfaceType type) override;
  QVariant currentValue() const override { return read_().value; }
  QVariant minimumValue() const override { return read_().least; }
  QVariant maximumValue() const override { return read_().most; }
  QVariant minimumStepSize() const override { return 0.0; }
  void setCurrentValue(const QVariant& /*value*/) override {}

 private:
  std::function<Reading()> read_;
};

// Tells assistive tools of changes of a widget's value: the first at once, then one for each
// kInterval, so that a value that runs does not keep them busy. Costs nothing while none listens.
class ValueAnnouncer {
 public:
  static constexpr int kInterval = 500;  // milliseconds

  // `widget` owns this object.
  ValueAnnouncer(QWidget& widget, std::function<QVariant()> value);

  void Changed();

 private:
  void Tell();

  QWidget& widget_;
  std::function<QVariant()> value_;
  std::unique_ptr<QTimer> timer_;  // runs while no further change is told
  bool late_ = false;              // a change waits for it
};

// The name, description or state of `widget` is another one now.
void AnnounceChange(QWidget& widget, QAccessible::Event what);

}  // namespace kv
