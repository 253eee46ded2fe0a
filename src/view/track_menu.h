// The entries of the menu for subtitles and sound tracks: made of the tracks of the medium that is
// open, and what happens when one is picked.
//
// Owned by `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "state/session.h"
#include "system/dialogs.h"
#include "view/command_router.h"
#include "view/menu_model.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// The name of a language for the user ("German") by its code ("de", "ger", "pt-BR"); empty for a
// code that names none.
using LanguageNames = std::function<std::string(std::string_view code)>;

class TrackMenu : public CommandTracks {
 public:
  // All must outlive this object.
  TrackMenu(MenuModel& menu, clsDShowControl& movie, Dialogs& dialogs, const Session& session,
            LanguageNames languages);

  // Brings the entries in line with the medium. Called whenever the menu is about to be shown.
  void Update();

  // CommandTracks
  void PickTrack(std::string_view key) override;
  void LoadSubtitles() override;

 private:
  std::string Caption(const MediaTrack& track, int number) const;
  void SetEntries(TrackKind kind);

  MenuModel& menu_;
  clsDShowControl& movie_;
  Dialogs& dialogs_;
  const Session& session_;
  LanguageNames languages_;
  std::vector<MediaTrack> shown_;  // that the entries were made of
  bool made_ = false;              // there are entries
};

}  // namespace kv
