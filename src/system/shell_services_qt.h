// The desktop's services: trash, preferred programs, sound server.
//
// Questions and error boxes go through the given dialogs. Interface thread only.
#pragma once

#include "system/dialogs.h"
#include "system/shell_services.h"
#include "system/sound_player_qt.h"

#include <QObject>

namespace kv {

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
  void SoundDone(SoundOutcome outcome, bool beep);

  Dialogs& dialogs_;
  QObject receiver_;  // of what the sound's thread reports; goes after the player
  SoundPlayer player_;
};

}  // namespace kv
