// The desktop's services: trash, preferred programs, sound server.
//
// Questions and error boxes go through the given dialogs. Interface thread only.
#pragma once

#include "system/dialogs.h"
#include "system/shell_services.h"
#include "system/sound_player_qt.h"

#include <QObject>

#include <map>

class QEventLoop;

namespace kv {

// Carries the end of a sound from its thread to the interface thread.
class SoundReports : public QObject {
  Q_OBJECT
 public:
  // `call` is the number of the PlaySoundEx call.
  Q_SIGNAL void Done(int call, kv::SoundOutcome outcome);
};

class ShellServicesQt : public ShellServices {
 public:
  // `dialogs` must live longer.
  explicit ShellServicesQt(Dialogs& dialogs);

  int SendToRecycleBin(const std::string& path, bool confirm, bool silent) override;
  int ShellOpenDocument(const std::string& file, const std::string& parameters,
                        const std::string& folder, const std::string& verb) override;
  void PlaySoundEx(const std::string& file, bool wait, bool loop, bool no_stop,
                   bool no_default) override;

 private:
  struct SoundCall {
    bool beep = false;              // the file was missing: the default sound instead
    QEventLoop* waiting = nullptr;  // ends with the sound
  };

  void SoundDone(int call, SoundOutcome outcome);

  Dialogs& dialogs_;
  std::map<int, SoundCall> calls_;  // that have not been reported done
  int last_call_ = 0;
  SoundReports reports_;
  SoundPlayer player_;  // ends its thread before the reports go
};

}  // namespace kv
