// `Toolbar` of the playlist window: its buttons by key, drawn in the colours of the scheme. Owned
// by `frmPlaylist`; interface thread only.
#pragma once

#include "playlist/playlist_commands.h"
#include "playlist/playlist_look_qt.h"

#include <QColor>
#include <QString>
#include <QToolBar>

#include <array>
#include <functional>

namespace kv {

class PlaylistToolbar : public QToolBar {
  Q_OBJECT

 public:
  // `art` answers the whole path of a drawing by its name.
  PlaylistToolbar(std::function<QString(const char* name)> art, QWidget* parent);

  void SetLook(const PlaylistLook& look);

  // The state of a checkable button; no command follows from it.
  void SetPressed(ListCommand command, bool pressed);
  bool Pressed(ListCommand command) const;

  // Draws the faces for the screen that the window is on.
  void DrawFaces();

 Q_SIGNALS:
  void Clicked(kv::ListCommand command);

 private:
  QAction* ActionOf(ListCommand command) const;

  std::function<QString(const char* name)> art_;
  std::array<QAction*, kListButtons.size()> actions_{};
  QColor ink_ = Qt::gray;
  QColor pressed_ink_ = Qt::gray;
  double scale_ = 0.0;
};

}  // namespace kv
