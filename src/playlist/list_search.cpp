#include "playlist/list_search.h"

#include "system/translation.h"

#include <algorithm>

namespace kv {

ListSearch::ListSearch(ListRows& rows, PlaylistForm& form, const TextPlatform& text,
                       Dialogs& dialogs, MessagePump& pump, FindHost& host)
    : rows_(rows), form_(form), text_(text), dialogs_(dialogs), pump_(pump), host_(host) {}

bool ListSearch::Search(const std::string& keyword, const SearchColumns& fields) {
  SearchConfirmed_ = true;
  const auto refuse = [this](const char* text) {
    dialogs_.ShowMessageBox({.text = text, .icon = BoxIcon::kExclamation, .title = {}});
    return false;
  };
  if (keyword.empty()) return refuse(Tr("Please enter a keyword to search for!"));
  SearchFields_ = fields;
  if (std::find(fields.begin(), fields.end(), true) == fields.end()) {
    return refuse(Tr("Please select one or more fields to search in!"));
  }
  SearchKeyword_ = keyword;
  return true;
}

void ListSearch::Find(bool& continueSearch) {
  if (finding_) return;
  finding_ = true;
  if (form_.SearchRow == 0) continueSearch = false;
  bool wanted = true;
  if (!continueSearch) {
    host_.ShowSearchDialog();
    wanted = !form_.Closing && SearchConfirmed_ && !SearchKeyword_.empty();
    if (wanted) form_.SearchRow = 1;
  }
  if (wanted) {
    host_.ShowSearchVis();
    pump_.PumpOnce();
    if (form_.SearchRow < 1 || form_.SearchRow > rows_.RowCount()) form_.SearchRow = 1;
    const int row = form_.Closing ? 0 : FirstMatch();
    host_.UnloadSearchVis();
    if (row > 0) {
      rows_.SelectOnly(row);
      rows_.EnsureVisible(row);
      form_.SearchRow = row + 1;
    } else if (!form_.Closing) {
      TellNothingFound(continueSearch);
    }
  }
  finding_ = false;
}

int ListSearch::FirstMatch() const {
  const LikePattern pattern(text_.Upper(SearchKeyword_));
  if (!pattern.WellFormed()) return 0;
  for (int row = form_.SearchRow; row <= rows_.RowCount(); ++row) {
    for (int column = 1; column <= kLastSubItem; ++column) {
      if (!SearchFields_[static_cast<std::size_t>(column) - 1]) continue;
      if (pattern.Matches(text_.Upper(rows_.SubItem(row, column)))) return row;
    }
  }
  return 0;
}

void ListSearch::TellNothingFound(bool continued) {
  const char* const text =
      continued
          ? TrLater("Reached end of list.\nPress CTRL+F, To search from the beginning of the list.")
          : TrLater("Not found!");
  if (!continued) form_.SearchRow = 1;
  dialogs_.ShowMessageBox(
      {.text = Tr(text), .icon = BoxIcon::kExclamation, .title = Tr("Playlist search")});
}

}  // namespace kv
