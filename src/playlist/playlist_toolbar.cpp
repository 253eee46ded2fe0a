#include "playlist/playlist_toolbar.h"

#include "controls/svg_face_qt.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QAction>
#include <QKeySequence>
#include <QToolButton>

#include <cstddef>
#include <string>
#include <utility>

namespace kv {
namespace {

constexpr int kFaceSize = 20;

QString TipOf(const ListButton& button) {
  const QKeySequence keys(ToQString(KeysOf(button.command)), QKeySequence::PortableText);
  const QString tip = QTr(button.tip);
  return keys.isEmpty()
             ? tip
             : QStringLiteral("%1 (%2)").arg(tip, keys.toString(QKeySequence::NativeText));
}

}  // namespace

PlaylistToolbar::PlaylistToolbar(std::function<QString(const char* name)> art, QWidget* parent)
    : QToolBar(parent), art_(std::move(art)) {
  setObjectName(QStringLiteral("Toolbar"));
  setAccessibleName(QTr("Playlist commands"));
  setIconSize({kFaceSize, kFaceSize});
  setToolButtonStyle(Qt::ToolButtonIconOnly);
  setMovable(false);
  setFloatable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  for (std::size_t i = 0; i < kListButtons.size(); ++i) {
    const ListButton& button = kListButtons[i];
    if (button.after_gap) addSeparator();
    QAction* const action = addAction(QTr(button.tip));
    action->setObjectName(ToQString(button.key));
    action->setToolTip(TipOf(button));
    action->setCheckable(button.checkable);
    connect(action, &QAction::triggered, this,
            [this, command = button.command] { Q_EMIT Clicked(command); });
    if (auto* const widget = qobject_cast<QToolButton*>(widgetForAction(action))) {
      widget->setAccessibleName(QTr(button.tip));
      widget->setFocusPolicy(Qt::TabFocus);
    }
    actions_[i] = action;
  }
}

void PlaylistToolbar::SetLook(const PlaylistLook& look) {
  setPalette(PaletteOf(look));
  setStyleSheet(ToolbarStyle(look));
  ink_ = look.window_text;
  pressed_ink_ = look.selected_playing;
  scale_ = 0.0;
  DrawFaces();
}

void PlaylistToolbar::DrawFaces() {
  const double scale = devicePixelRatioF();
  if (scale == scale_) return;
  scale_ = scale;
  const QSize size(kFaceSize, kFaceSize);
  for (std::size_t i = 0; i < kListButtons.size(); ++i) {
    const QString file = art_(("list/" + std::string(kListButtons[i].key)).c_str());
    QIcon icon(RenderFace(file, ink_, size, scale));
    icon.addPixmap(RenderFace(file, pressed_ink_, size, scale), QIcon::Normal, QIcon::On);
    actions_[i]->setIcon(icon);
  }
}

QAction* PlaylistToolbar::ActionOf(ListCommand command) const {
  for (std::size_t i = 0; i < kListButtons.size(); ++i) {
    if (kListButtons[i].command == command) return actions_[i];
  }
  return nullptr;
}

void PlaylistToolbar::SetPressed(ListCommand command, bool pressed) {
  if (QAction* const action = ActionOf(command)) action->setChecked(pressed);
}

bool PlaylistToolbar::Pressed(ListCommand command) const {
  const QAction* const action = ActionOf(command);
  return action != nullptr && action->isChecked();
}

}  // namespace kv
