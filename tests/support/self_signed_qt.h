// A server for TLS whose certificate, for 127.0.0.1, is signed by nobody but itself.
#pragma once

#include "support/temp_folder.h"

#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QString>

#include <memory>
#include <string>

namespace kv {

// The certificate is left at `certificate`. Null where the toolkit has no TLS, or nothing is
// installed that makes a key.
inline std::unique_ptr<QSslServer> SelfSignedServer(const std::string& certificate) {
  const TempFolder folder;
  const QString key = QString::fromStdString(folder.Path("key.pem"));
  const QString path = QString::fromStdString(certificate);
  const QString words = QStringLiteral(
      "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=127.0.0.1 "
      "-addext subjectAltName=IP:127.0.0.1");
  const QStringList files = {QStringLiteral("-keyout"), key, QStringLiteral("-out"), path};
  if (!QSslSocket::supportsSsl() ||
      QProcess::execute(QStringLiteral("openssl"), words.split(QLatin1Char(' ')) + files) != 0) {
    return nullptr;
  }
  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setPrivateKey(QSslKey(QByteArray::fromStdString(folder.Read("key.pem")), QSsl::Ec));
  configuration.setLocalCertificate(QSslCertificate::fromPath(path).value(0));
  auto server = std::make_unique<QSslServer>();
  server->setSslConfiguration(configuration);
  return server;
}

}  // namespace kv
