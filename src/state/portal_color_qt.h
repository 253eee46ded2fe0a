// A colour of the screen by way of the desktop's portal: for desktops that do not let programs read
// the screen (Wayland), which show a colour picker of their own instead.
//
// One question at a time; an answer that comes after this object's end is dropped. Interface
// thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <cstdint>
#include <functional>

namespace kv {

class PortalColor : public QObject {
  Q_OBJECT

 public:
  // `bus`: the session's.
  PortalColor(const QDBusConnection& bus, QObject* parent);

  // `done` gets the colour (0x00BBGGRR), or -1 when the user cancels; `refused` is called when
  // there is no such portal. One of the two, later, once; a question that is open is forgotten.
  void PickColor(std::function<void(std::int32_t color)> done, std::function<void()> refused);

 private Q_SLOTS:
  void Response(uint response, const QVariantMap& results);

 private:
  void Listen(const QString& path);
  void StopListening();

  QDBusConnection bus_;
  QString path_;
  int question_ = 0;
  std::function<void(std::int32_t color)> done_;
};

}  // namespace kv
