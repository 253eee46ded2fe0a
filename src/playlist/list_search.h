// Find in the rows by a dialog, with F3 to go on: the rules behind `frmSearch`.
//
// The pattern must match a whole cell (wildcard.h), in any case. Keyword and columns are kept for
// the life of the process. Owned beside the rows; interface thread only. The dialog, its boxes and
// the find itself pump messages.
#pragma once

#include "playlist/list_rows.h"
#include "playlist/playlist_form.h"
#include "playlist/wildcard.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/text_platform.h"

#include <array>
#include <cstddef>
#include <string>

namespace kv {

// One for each sub-item, "Filename" first.
using SearchColumns = std::array<bool, static_cast<std::size_t>(kLastSubItem)>;

class FindHost {
 public:
  virtual ~FindHost() = default;
  // `frmSearch`, modal: fills itself from Keyword() and Fields(), ends by Search() or Cancel().
  virtual void ShowSearchDialog() = 0;
  virtual void ShowSearchVis() = 0;
  virtual void UnloadSearchVis() = 0;
};

class ListSearch {
 public:
  // All must outlive this object.
  ListSearch(ListRows& rows, PlaylistForm& form, const TextPlatform& text, Dialogs& dialogs,
             MessagePump& pump, FindHost& host);

  // What the dialog starts with; columns are selected only where there is a keyword.
  const std::string& Keyword() const { return SearchKeyword_; }
  const SearchColumns& Fields() const { return SearchFields_; }

  // "Search (F3)": true when the dialog may close; else a box has told what is missing.
  bool Search(const std::string& keyword, const SearchColumns& fields);
  // "Cancel", and the dialog closed in any other way.
  void Cancel() { SearchConfirmed_ = false; }

  // Finds the next row: with `continueSearch` (F3) from `SearchRow` on, else after asking what for.
  // Becomes false when there is nothing to go on with.
  void Find(bool& continueSearch);

 private:
  int FirstMatch() const;
  void TellNothingFound(bool continued);

  ListRows& rows_;
  PlaylistForm& form_;
  const TextPlatform& text_;
  Dialogs& dialogs_;
  MessagePump& pump_;
  FindHost& host_;
  std::string SearchKeyword_;
  SearchColumns SearchFields_{};
  bool SearchConfirmed_ = false;
  bool finding_ = false;
};

}  // namespace kv
