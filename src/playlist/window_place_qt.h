// Where the playlist's windows come up. Interface thread.
#pragma once

#include <QRect>
#include <QWidget>

namespace kv {

// `wanted` moved, and made smaller where it must be, so that it lies on the screens that there are.
QRect OnScreen(QRect wanted);

// A place of `size` beside `owner` that does not cover it: to its right, else its left, else
// below, else over its middle. Null stands for the middle of the screen.
QRect PlaceBeside(const QWidget* owner, QSize size);

}  // namespace kv
