// `tmrDetails`: fills the details columns in behind the user's back, one row in each tick.
//
// The files are read ahead on a thread; a tick whose row is not ready returns at once and the next
// one comes back to it. `DetailsCursor` is the row filled in last; whoever changes many rows sets
// it to 0 and the walk begins again. Owned beside the rows; interface thread only.
#pragma once

#include "playlist/details_read_ahead.h"
#include "playlist/list_rows.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_form.h"
#include "state/settings.h"
#include "system/message_pump.h"
#include "system/timers.h"

#include <memory>

namespace kv {

class DetailsLoader : public RowDetails {
 public:
  // All must outlive this object, which gives itself to the rows as their details.
  DetailsLoader(const OSTList& list, ListRows& rows, PlaylistForm& form, Settings& settings,
                TimerSource& timers, MessagePump& pump, DetailsReadAhead& files);
  ~DetailsLoader() override;
  DetailsLoader(const DetailsLoader&) = delete;
  DetailsLoader& operator=(const DetailsLoader&) = delete;

  // RowDetails. A row added while a walk is under way waits for its turn in it; else a walk of its
  // own begins there, which leaves the status panel alone.
  void AddSubItem(int row) override;
  void Restart() override;
  void Stop() override;

  // The toolbar button with key "showdetails" was pressed or released.
  void ShowDetails(bool pressed);

  // True while rows wait to be filled in.
  bool Running() const { return timer_->Enabled(); }

 private:
  void Tick();
  void FillNext();
  void Finish();

  const OSTList& list_;
  ListRows& rows_;
  PlaylistForm& form_;
  Settings& settings_;
  MessagePump& pump_;
  DetailsReadAhead& files_;
  std::unique_ptr<Timer> timer_;
  bool quiet_ = false;  // the walk began with a single row
};

}  // namespace kv
