// The search that goes on with every key stroke: the rules behind `frmQuickSearch`.
//
// With the playlist window loaded it looks at all cells, else at the paths of the list alone.
// Folded texts are kept while the window is open, so that a key stroke over a full list costs a few
// milliseconds. Owned by the main form; interface thread only.
#pragma once

#include "playlist/list_rows.h"
#include "playlist/ost_list.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/text_platform.h"

#include <string>
#include <string_view>
#include <vector>

namespace kv {

class QuickSearchHost {
 public:
  virtual ~QuickSearchHost() = default;
  // Makes the item the current one and opens it in a moment.
  virtual void PlaylistSetNext(int index) = 0;
};

class QuickSearch {
 public:
  // What the window shows first. The caret is a number of characters from the beginning.
  struct Start {
    std::string text;
    int caret = 0;
  };

  // All must outlive this object.
  QuickSearch(const OSTList& list, ListRows& rows, Settings& settings, Session& session,
              const TextPlatform& text, QuickSearchHost& host);

  // The window comes up and goes; `text` is what its box holds and is remembered.
  Start Form_Load();
  void Form_Unload(const std::string& text);

  // The box has a new text; empty clears the lines.
  void Text1_Change(const std::string& text);

  // Fills the lines with all items that match the whole of `pattern`.
  void Check(const std::string& pattern);
  // One for each match: the number of its item, " : ", and what it is.
  const std::vector<std::string>& Lines() const { return lines_; }

  // The line that gets the selection when Down leads from the box to the lines, from 0; -1 none.
  int LineForDown() const { return lines_.size() >= 2 ? 1 : -1; }

  // A line was chosen, from 0: selects its row and jumps to its item. True: the window closes.
  bool List1_DblClick(int line);

  // "Searching filenames only!..." is to be seen; asked every 100 ms.
  bool NoteVisible() const { return !session_.PlaylistWindowLoaded; }

 private:
  struct FoldedItem {
    std::string item;
    std::string lower;
  };

  const std::string& FoldedPath(int index);
  void CheckPaths(const std::string& lower);
  void CheckRows(const std::string& lower);

  const OSTList& list_;
  ListRows& rows_;
  Settings& settings_;
  Session& session_;
  const TextPlatform& text_;
  QuickSearchHost& host_;
  std::vector<std::string> lines_;
  std::vector<FoldedItem> folded_;  // by index of the list; right while `item` is that item
};

}  // namespace kv
