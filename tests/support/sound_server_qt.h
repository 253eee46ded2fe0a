// A sound server of a test's own, which plays into the void; its monitor can be listened to.
#pragma once

#include "support/temp_folder.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QString>
#include <QThread>

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace kv {

class SoundServerProcess {
 public:
  // Will listen at `socket`.
  explicit SoundServerProcess(std::string socket) : socket_(std::move(socket)) {}
  ~SoundServerProcess() { Stop(); }
  SoundServerProcess(const SoundServerProcess&) = delete;
  SoundServerProcess& operator=(const SoundServerProcess&) = delete;

  static bool Installed() {
    return !QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty();
  }

  void Start() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString folder = QString::fromStdString(folder_.Path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder);
    environment.insert(QStringLiteral("HOME"), folder);
    environment.remove(QStringLiteral("PULSE_SERVER"));
    server_.setProcessEnvironment(environment);
    server_.start(
        QStringLiteral("pulseaudio"),
        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
         QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
         QStringLiteral("--log-level=error"), QStringLiteral("-L"),
         QStringLiteral("module-null-sink sink_name=void rate=48000"), QStringLiteral("-L"),
         QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") +
             QString::fromStdString(socket_)});
    const QDeadlineTimer patience(8000);
    while (!std::filesystem::exists(socket_) && !patience.hasExpired()) QThread::msleep(10);
    EXPECT_TRUE(std::filesystem::exists(socket_)) << "the sound server does not come up";
  }

  // As a crash does, but that the socket is gone.
  void Stop() {
    server_.kill();
    server_.waitForFinished(3000);
    std::filesystem::remove(socket_);
  }

 private:
  TempFolder folder_;
  std::string socket_;
  QProcess server_;
};

}  // namespace kv
