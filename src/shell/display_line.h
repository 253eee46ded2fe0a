// A label of the strip: a text that can be a link, which Tab then reaches and a press opens.
//
// What fits is shown; the whole text is what assistive tools get. Owned by its parent widget;
// interface thread only.
#pragma once

#include <QLabel>
#include <QString>

#include <functional>

namespace kv {

class DisplayLine : public QLabel {
  Q_OBJECT

 public:
  explicit DisplayLine(QWidget* parent);

  // The whole text; the label shows as much of it as its owner lets it.
  void SetFullText(const QString& text);
  const QString& FullText() const { return full_text_; }

  void SetLink(bool link);
  bool IsLink() const { return link_; }

  // The link is opened, by key or by an assistive tool.
  std::function<void()> on_press;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString full_text_;
  bool link_ = false;
};

}  // namespace kv
