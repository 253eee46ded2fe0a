// One question to the desktop's portal, as a dialog that shows nothing itself: modal, so that this
// program's windows wait, and ended like any other. Inside the portal's file dialogs only.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDialog>
#include <QString>
#include <QTimer>
#include <QVariantMap>

namespace kv {

class PortalRequest : public QDialog {
  Q_OBJECT

 public:
  // Results of exec() beside those of a dialog.
  enum Result { kRefused = 2, kSilent = 3 };

  PortalRequest(const QDBusConnection& bus, QWidget* owner);
  ~PortalRequest() override;

  // What the call must name as its "handle_token".
  const QString& Token() const { return token_; }

  // Sends the call; exec() then waits for the user.
  void Send(const QDBusMessage& call);

  const QVariantMap& Results() const { return results_; }

 private:
  Q_SLOT void Response(uint response, const QVariantMap& results);

  void Listen(const QString& path);

  QDBusConnection bus_;
  QString token_;
  QString path_;      // of the answer
  bool open_ = true;  // the portal's side
  QTimer patience_;
  QVariantMap results_;
};

}  // namespace kv
