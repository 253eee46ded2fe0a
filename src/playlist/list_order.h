// The order and the membership of the list under the user's hand: sort, shuffle, move, remove.
//
// Each operation changes list and rows together and keeps `PlaylistIndex` on its medium. Sorting,
// shuffling and clearing make the list dirty, moving and removing do not. Owned beside the list, so
// that closing the window in the middle of an operation ends it and loses nothing. Interface thread
// only; removing from the disk pumps messages, and until it is done no other operation begins but
// ClearList.
#pragma once

#include "playlist/list_rows.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_form.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/shell_services.h"
#include "system/text_platform.h"

#include <functional>
#include <string>
#include <vector>

namespace kv {

class ListOrderHost {
 public:
  virtual ~ListOrderHost() = default;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void SetBusyPointer(bool on) = 0;
  // Holds the painting of the rows while many of them go.
  virtual void LockWindowRedraw(bool locked) = 0;
};

class ListOrder {
 public:
  // Gives the next number in [0, 1).
  using Random = std::function<double()>;

  // All must outlive this object. `details` stands still during a shuffle. Without `random` each
  // shuffle has a generator of its own, seeded from the clock.
  ListOrder(OSTList& list, ListRows& rows, PlaylistForm& form, RowDetails& details,
            Settings& settings, Session& session, const TextPlatform& text, ShellServices& services,
            Dialogs& dialogs, MessagePump& pump, ListOrderHost& host, Random random = {});

  // The commands "sort" (by file name) and "randomize".
  void SList();
  void RList();

  // A click on the header of column `index`, from 1: sorts by it, unless it is the number or the
  // column of the last such sort.
  void ColumnClick(int index);

  // Sorts ascending without regard to case: by file name (-1), row number (0) or the text of a
  // sub-item. Equal keys keep their order.
  void SortPlaylist(int column);
  void RandomizePlaylist();

  // Moves the selected rows by one; nothing moves when one of them is at that end.
  void MoveFilesDown();
  void MoveFilesUp();

  // Removes the selected rows, and with `deleteFromDisk` their files into the trash, without a
  // further question. A row goes even when its file stays. URLs, folders and devices are left
  // alone, and so is a file that its row does not show.
  void RemoveSel(bool deleteFromDisk);
  // Asks, then RemoveSel(true).
  void DelSel();

  // Empties the list without a question; the medium goes on.
  void ClearList();

  // True inside a removal that pumps.
  bool Working() const { return working_; }

 private:
  std::vector<std::string> SortKeys(int column) const;
  // Item `order[i]`, counted from 0, becomes item i + 1; `PlaylistIndex` follows.
  void Rearrange(const std::vector<int>& order);
  void MoveBy(int step);
  void RowRemoved(int row);
  // These leave the number of the row removed last, and answer how many went.
  int RemoveRows(const std::vector<int>& rows, int& last_removed);
  int RemoveWithFiles(const std::vector<int>& rows, int& last_removed);
  void Trash(int row);

  OSTList& list_;
  ListRows& rows_;
  PlaylistForm& form_;
  RowDetails& details_;
  Settings& settings_;
  Session& session_;
  const TextPlatform& text_;
  ShellServices& services_;
  Dialogs& dialogs_;
  MessagePump& pump_;
  ListOrderHost& host_;
  Random random_;
  bool working_ = false;
};

}  // namespace kv
