#include "playlist/list_order.h"

#include "playlist/fold_text.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/translation.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <random>
#include <utility>

namespace kv {
namespace {

ListOrder::Random ClockSeeded() {
  const auto now = std::chrono::system_clock::now().time_since_epoch().count();
  return [engine = std::mt19937_64(static_cast<std::mt19937_64::result_type>(now))]() mutable {
    return std::generate_canonical<double, 32>(engine);
  };
}

// A number from 1 to `count`: the ends are half as likely as those between, halves go to the even.
int Pick(const ListOrder::Random& random, std::size_t count) {
  const double last = static_cast<double>(count);
  const double picked = std::nearbyint(1.0 + random() * (last - 1.0));
  return static_cast<int>(std::clamp(picked, 1.0, last));
}

}  // namespace

ListOrder::ListOrder(OSTList& list, ListRows& rows, PlaylistForm& form, RowDetails& details,
                     Settings& settings, Session& session, const TextPlatform& text,
                     ShellServices& services, Dialogs& dialogs, MessagePump& pump,
                     ListOrderHost& host, Random random)
    : list_(list),
      rows_(rows),
      form_(form),
      details_(details),
      settings_(settings),
      session_(session),
      text_(text),
      services_(services),
      dialogs_(dialogs),
      pump_(pump),
      host_(host),
      random_(std::move(random)) {}

void ListOrder::SList() {
  if (working_) return;
  form_.DetailsCursor = 0;
  rows_.SetStatus(Tr("Sorting list..."));
  SortPlaylist(-1);
  host_.UpdateFileDisp("");
  rows_.UpdateNumberOfitemsStatus();
}

void ListOrder::RList() {
  if (working_) return;
  details_.Stop();
  rows_.SetStatus(Tr("Randomizing list..."));
  RandomizePlaylist();
  host_.UpdateFileDisp("");
  details_.Restart();
  rows_.UpdateNumberOfitemsStatus();
}

void ListOrder::ColumnClick(int index) {
  if (working_ || index <= 1 || index == form_.LastSortColumn) return;
  SortPlaylist(index - 1);
  form_.LastSortColumn = index;
  rows_.UpdateNumberOfitemsStatus();
}

std::vector<std::string> ListOrder::SortKeys(int column) const {
  std::vector<std::string> keys;
  keys.reserve(static_cast<std::size_t>(list_.Count()));
  for (int i = 1; i <= list_.Count(); ++i) {
    if (column < 0) {
      keys.push_back(LowerText(FileNameOfPath(list_.Item(i)), text_));
    } else if (column == 0) {
      keys.push_back(RowNumberText(i));
    } else {
      keys.push_back(LowerText(rows_.SubItem(i, column), text_));
    }
  }
  return keys;
}

void ListOrder::SortPlaylist(int column) {
  if (working_) return;
  host_.SetBusyPointer(true);
  session_.PlaylistDirty = true;
  rows_.SetStatus(Tr("Sorting..."));
  const std::vector<std::string> keys = SortKeys(column);
  std::vector<int> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&keys](int a, int b) {
    return keys[static_cast<std::size_t>(a)] < keys[static_cast<std::size_t>(b)];
  });
  Rearrange(order);
  host_.UpdateFileDisp("");
  host_.SetBusyPointer(false);
}

void ListOrder::RandomizePlaylist() {
  if (working_) return;
  host_.SetBusyPointer(true);
  rows_.SetStatus(Tr("Randimizing..."));
  session_.PlaylistDirty = true;
  const Random random = random_ ? random_ : ClockSeeded();
  std::vector<int> left(static_cast<std::size_t>(list_.Count()));
  std::iota(left.begin(), left.end(), 0);
  std::vector<int> order;
  order.reserve(left.size());
  while (!left.empty()) {
    const auto picked = left.begin() + (Pick(random, left.size()) - 1);
    order.push_back(*picked);
    left.erase(picked);
  }
  Rearrange(order);
  host_.UpdateFileDisp("");
  host_.SetBusyPointer(false);
}

// Nothing pumps between the clearing and the last add, so the list is never seen in pieces.
void ListOrder::Rearrange(const std::vector<int>& order) {
  std::vector<std::string> items;
  items.reserve(order.size());
  for (const int item : order) items.push_back(list_.Item(item + 1));
  const auto playing = std::find(order.begin(), order.end(), settings_.PlaylistIndex - 1);
  if (playing != order.end()) {
    settings_.PlaylistIndex = static_cast<int>(playing - order.begin()) + 1;
  }
  list_.Clear();
  for (std::string& item : items) list_.add(std::move(item));
  rows_.FillPlaylist("");
}

void ListOrder::MoveFilesDown() {
  MoveBy(1);
}

void ListOrder::MoveFilesUp() {
  MoveBy(-1);
}

void ListOrder::MoveBy(int step) {
  if (working_) return;
  const int end = step > 0 ? rows_.RowCount() : 1;
  if (rows_.RowCount() == 0 || rows_.IsSelected(end)) return;
  const std::vector<int> moved = rows_.MoveSelected(step);
  if (moved.empty()) return;
  for (const int row : moved) {
    if (settings_.PlaylistIndex == row + step) {
      settings_.PlaylistIndex = row;
    } else if (settings_.PlaylistIndex == row) {
      settings_.PlaylistIndex = row + step;
    }
    if (step > 0) {
      list_.MoveItemDown(row);
    } else {
      list_.MoveItemUp(row);
    }
  }
  host_.UpdateFileDisp("");
  rows_.EnsureVisible(moved.back());
}

void ListOrder::RowRemoved(int row) {
  if (row == settings_.PlaylistIndex) {
    settings_.PlaylistIndex = 0;
  } else if (row < settings_.PlaylistIndex) {
    --settings_.PlaylistIndex;
  }
}

// From the end, so that the numbers before it hold and little is shifted.
int ListOrder::RemoveRows(const std::vector<int>& rows, int& last_removed) {
  if (rows.empty()) return 0;
  const std::vector<int> from_end(rows.rbegin(), rows.rend());
  for (const int row : from_end) {
    RowRemoved(row);
    list_.Remove(row);
  }
  rows_.Remove(rows);
  const int count = static_cast<int>(rows.size());
  last_removed = rows.back() - (count - 1);  // its number after the others before it were gone
  return count;
}

// A trash can take seconds for each file, so the window lives meanwhile. What the user confirmed is
// noted on the rows themselves: no click changes it, and rows made anew are none of it.
int ListOrder::RemoveWithFiles(const std::vector<int>& rows, int& last_removed) {
  int count = 0;
  rows_.TakeOnForRemoval(rows);
  while (!form_.Closing && !session_.Unloading) {
    const int row = rows_.FirstForRemoval();
    if (row == 0) break;
    Trash(row);
    // A trash may pump, too.
    const int now = rows_.FirstForRemoval();
    if (now == 0) break;
    count += RemoveRows({now}, last_removed);
    pump_.PumpOnce();
  }
  rows_.ForgetRemoval();
  return count;
}

void ListOrder::Trash(int row) {
  const std::string path = list_.Item(row);
  if (IsUrl(path) || !rows_.ShowsItem(row) || !FileExists(path)) return;
  services_.SendToRecycleBin(path, false, true);
}

void ListOrder::RemoveSel(bool deleteFromDisk) {
  if (working_) return;
  working_ = true;
  host_.LockWindowRedraw(true);
  rows_.SetStatus(Tr("Updating list..."));
  host_.SetBusyPointer(true);
  int last_removed = 0;
  const std::vector<int> selected = rows_.SelectedRows();
  const int count =
      deleteFromDisk ? RemoveWithFiles(selected, last_removed) : RemoveRows(selected, last_removed);
  rows_.MarkPlaying();
  rows_.UpdateNumbers();
  host_.LockWindowRedraw(false);
  host_.SetBusyPointer(false);
  host_.UpdateFileDisp("");
  // So that Delete pressed again and again walks down the list.
  if (count == 1 && last_removed <= rows_.RowCount()) rows_.SelectOnly(last_removed);
  working_ = false;
}

void ListOrder::DelSel() {
  if (working_) return;
  const BoxAnswer answer = dialogs_.ShowMessageBox({.text = Tr("Delete files from DISK ?"),
                                                    .icon = BoxIcon::kExclamation,
                                                    .buttons = BoxButtons::kOkCancel,
                                                    .title = Tr("DELETE FROM DISK?")});
  if (answer == BoxAnswer::kCancel || form_.Closing || session_.Unloading) return;
  RemoveSel(true);
  host_.UpdateFileDisp("");
}

void ListOrder::ClearList() {
  session_.PlaylistDirty = true;
  rows_.Clear();
  list_.Clear();
  settings_.PlaylistIndex = 0;
  rows_.UpdateNumberOfitemsStatus();
  host_.UpdateFileDisp("");
}

}  // namespace kv
