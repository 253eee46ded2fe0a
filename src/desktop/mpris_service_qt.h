// The media player interface on the session bus (org.mpris.MediaPlayer2.kestrelview).
//
// Carries calls to the rules and their news to the bus, and decides nothing. Commands are answered
// at once and carried out from the event loop, since they can take as long as an open. A second
// player on the bus adds ".instance" and its process number to the name. Nothing waits for the bus.
// Owned by the shell's desktop room; interface thread only.
#pragma once

#include "desktop/mpris_player.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>

#include <functional>

namespace kv {

class MprisService : public QDBusVirtualObject, public MprisBus {
  Q_OBJECT

 public:
  explicit MprisService(const QDBusConnection& bus);
  ~MprisService() override;

  // Asks for the name; `player` begins when it is granted, and must outlive this object.
  void Start(MprisPlayer& player);
  // Answers nobody any more; commands that are still to be carried out are dropped.
  void Stop();

  // MprisBus
  void PropertiesChanged(MprisInterface interface, const MprisProperties& changed) override;
  void Seeked(std::int64_t position) override;

  // QDBusVirtualObject
  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  void AskForName(const QString& name, bool may_add_number);
  QDBusMessage AnswerProperties(const QDBusMessage& message);
  QDBusMessage AnswerCommand(const QDBusMessage& message);
  void Later(std::function<void(MprisPlayer&)> command);

  QDBusConnection bus_;
  MprisPlayer* player_ = nullptr;
};

}  // namespace kv
