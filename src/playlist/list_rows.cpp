#include "playlist/list_rows.h"

#include "playlist/fold_text.h"
#include "system/ascii_text.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace kv {
namespace {

constexpr std::array<std::string_view, 8> kAudioExtensions = {".mp3", ".mp2", ".wav", ".voc",
                                                              ".au",  ".wma", ".mid", ".midi"};

// Above this many separate gaps a new set of rows is less work for a window than each gap.
constexpr std::size_t kManyGaps = 64;

// Sub-items 2 and up.
constexpr std::array<std::string MediaDetails::*, 10> kDetailCells = {
    &MediaDetails::time,     &MediaDetails::file_size, &MediaDetails::artist,
    &MediaDetails::album,    &MediaDetails::title,     &MediaDetails::genre,
    &MediaDetails::bitrate,  &MediaDetails::mode,      &MediaDetails::frequency,
    &MediaDetails::extension};
static_assert(kDetailCells.size() == static_cast<std::size_t>(kLastSubItem) - 1);

}  // namespace

RowIcon GetIcon(std::string_view path) {
  if (StartsWithIgnoringCase(path, "http://") || StartsWithIgnoringCase(path, "ftp://")) {
    return RowIcon::kInternet;
  }
  const std::string extension = LowerAscii(GetFileExtension(path, true));
  const bool audio = std::find(kAudioExtensions.begin(), kAudioExtensions.end(), extension) !=
                     kAudioExtensions.end();
  return audio ? RowIcon::kAudio : RowIcon::kOtherMedia;
}

std::string RowNumberText(int row) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04d", row);
  return text.data();
}

void CellTexts::Set(const Views& cells) {
  std::string text;
  std::size_t size = 0;
  for (const std::string_view cell : cells) size += cell.size();
  text.reserve(size);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    text += cells[i];
    ends_[i] = static_cast<std::uint32_t>(text.size());
  }
  text_ = std::move(text);  // only now: the views may lie in the old one
}

std::string_view CellTexts::Text(int sub_item) const {
  if (sub_item < 1 || sub_item > kLastSubItem) return {};
  const auto i = static_cast<std::size_t>(sub_item) - 1;
  const std::size_t begin = i == 0 ? 0 : ends_[i - 1];
  return std::string_view(text_).substr(begin, ends_[i] - begin);
}

CellTexts CellTexts::Lower(const TextPlatform& platform) const {
  CellTexts lower;
  if (IsAscii(text_)) {
    lower = *this;
    FoldAscii(lower.text_);
    return lower;
  }
  lower.text_.reserve(text_.size());
  for (std::size_t i = 0; i < ends_.size(); ++i) {
    lower.text_ += LowerText(Text(static_cast<int>(i) + 1), platform);
    lower.ends_[i] = static_cast<std::uint32_t>(lower.text_.size());
  }
  return lower;
}

ListRows::ListRows(const OSTList& list, PlaylistForm& form, const Settings& settings,
                   const TextPlatform& text)
    : list_(list), form_(form), settings_(settings), text_(text) {}

void ListRows::SetObserver(RowsObserver* observer) {
  observer_ = observer != nullptr ? observer : &nobody_;
  observer_->StatusText(status_);
}

void ListRows::SetDetails(RowDetails* details) {
  details_ = details;
}

void ListRows::Form_Load() {
  form_ = PlaylistForm{};
  form_.MarkedRow = settings_.PlaylistIndex;
  FillPlaylist("");
  UpdateNumberOfitemsStatus();
}

void ListRows::Form_Unload() {
  form_.Closing = true;
  if (details_ != nullptr) details_->Stop();
  observer_->BeforeReset();
  rows_.clear();
  rows_.shrink_to_fit();
  observer_->RowsReset();
}

std::unique_ptr<ListRows::Row> ListRows::MakeRow(const std::string& path, bool whole_url) const {
  auto row = std::make_unique<Row>();
  row->icon = GetIcon(path);
  const std::string shown = WithoutUserInfo(path);
  if (whole_url && IsUrl(path)) {
    row->cells.Set({shown});
  } else {
    row->cells.Set({FileNameOfPath(shown)});
  }
  return row;
}

void ListRows::FillPlaylist(const std::string& path) {
  if (!path.empty()) {
    const int row = RowCount() + 1;
    std::unique_ptr<Row> made = MakeRow(path, false);
    observer_->BeforeInsert(row, row);
    rows_.push_back(std::move(made));
    observer_->RowsInserted(row, row);
    if (details_ != nullptr && IsOn(settings_.PlaylistShowDetails)) details_->AddSubItem(row);
    return;
  }
  std::vector<std::unique_ptr<Row>> rows;
  if (!form_.Closing) {
    rows.reserve(static_cast<std::size_t>(list_.Count()));
    for (int i = 1; i <= list_.Count(); ++i) rows.push_back(MakeRow(list_.Item(i), true));
  }
  observer_->BeforeReset();
  rows_ = std::move(rows);
  observer_->RowsReset();
  if (details_ != nullptr) details_->Restart();
}

ListRows::Row* ListRows::At(int row) const {
  if (row < 1 || row > RowCount()) return nullptr;
  return rows_[static_cast<std::size_t>(row) - 1].get();
}

std::string ListRows::NumberText(int row) const {
  return At(row) != nullptr ? RowNumberText(row) : std::string();
}

std::string_view ListRows::SubItem(int row, int sub_item) const {
  const Row* found = At(row);
  return found != nullptr ? found->cells.Text(sub_item) : std::string_view();
}

RowIcon ListRows::Icon(int row) const {
  const Row* found = At(row);
  return found != nullptr ? found->icon : RowIcon::kOtherMedia;
}

bool ListRows::IsMarked(int row) const {
  const Row* found = At(row);
  return found != nullptr && found->marked;
}

const CellTexts& ListRows::Folded(int row) const {
  static const CellTexts kEmpty;
  Row* found = At(row);
  if (found == nullptr) return kEmpty;
  if (found->folded == nullptr) {
    found->folded = std::make_unique<CellTexts>(found->cells.Lower(text_));
  }
  return *found->folded;
}

void ListRows::DropFolded() {
  for (const auto& row : rows_) row->folded.reset();
}

bool ListRows::ShowsItem(int row) const {
  const Row* found = At(row);
  if (found == nullptr || row > list_.Count()) return false;
  const std::string_view shown = found->cells.Text(1);
  const std::string item = WithoutUserInfo(list_.Item(row));
  return shown == item || shown == FileNameOfPath(item);
}

void ListRows::SetDetailsOf(int row, const MediaDetails& details) {
  Row* found = At(row);
  if (found == nullptr) return;
  CellTexts::Views cells;
  cells[0] = found->cells.Text(1);
  for (std::size_t i = 0; i < kDetailCells.size(); ++i) cells[i + 1] = details.*kDetailCells[i];
  found->cells.Set(cells);
  found->folded.reset();
  observer_->RowsChanged(row, row);
}

void ListRows::RemoveDetails() {
  for (const auto& row : rows_) {
    row->cells.Set({row->cells.Text(1)});
    row->folded.reset();
  }
  if (!rows_.empty()) observer_->RowsChanged(1, RowCount());
}

void ListRows::SetMark(int row, bool on) {
  Row* found = At(row);
  if (found == nullptr || found->marked == on) return;
  found->marked = on;
  observer_->RowsChanged(row, row);
}

void ListRows::MarkPlaying() {
  if (form_.Closing) return;
  const int playing = settings_.PlaylistIndex;
  const Row* found = At(playing);
  if (found != nullptr && found->marked) return;
  const int old = form_.MarkedRow;
  form_.MarkedRow = found != nullptr ? playing : 0;
  if (old != playing) SetMark(old, false);
  if (found == nullptr) return;
  SetMark(playing, true);
  if (IsOn(settings_.FindPlaying)) EnsureVisible(playing);
}

void ListRows::FindPlaying() {
  EnsureVisible(settings_.PlaylistIndex);
}

bool ListRows::IsSelected(int row) const {
  const Row* found = At(row);
  return found != nullptr && found->selected;
}

void ListRows::Select(int row, bool on) {
  SelectRange(row, row, on);
}

void ListRows::SelectRange(int first, int last, bool on) {
  int low = 0;
  int high = 0;
  for (int row = std::max(first, 1); row <= std::min(last, RowCount()); ++row) {
    if (Row* found = At(row); found->selected != on) {
      found->selected = on;
      if (low == 0) low = row;
      high = row;
    }
  }
  if (low != 0) observer_->SelectionChanged(low, high);
}

void ListRows::SelectOnly(int row) {
  SelectRange(1, row - 1, false);
  SelectRange(std::max(row + 1, 1), RowCount(), false);
  Select(row, true);
}

std::vector<int> ListRows::SelectedRows() const {
  std::vector<int> selected;
  for (int row = 1; row <= RowCount(); ++row) {
    if (At(row)->selected) selected.push_back(row);
  }
  return selected;
}

void ListRows::ItemClick(int row) {
  form_.ClickedRow = row;
  if (row + 1 <= RowCount()) form_.SearchRow = row + 1;
}

void ListRows::RowWentFrom(int row) {
  if (row <= form_.DetailsCursor) --form_.DetailsCursor;
  if (row == form_.MarkedRow) {
    form_.MarkedRow = 0;
  } else if (row < form_.MarkedRow) {
    --form_.MarkedRow;
  }
}

void ListRows::Remove(const std::vector<int>& rows) {
  struct Gap {
    int first;
    int last;
  };
  std::vector<Gap> gaps;
  for (const int row : rows) {
    if (At(row) == nullptr || (!gaps.empty() && row <= gaps.back().last)) continue;
    if (!gaps.empty() && gaps.back().last + 1 == row) {
      gaps.back().last = row;
    } else {
      gaps.push_back({row, row});
    }
  }
  const bool reset = gaps.size() > kManyGaps;
  if (reset) observer_->BeforeReset();
  // From the end, so that the numbers before it hold.
  std::reverse(gaps.begin(), gaps.end());
  for (const auto& [first, last] : gaps) {
    if (!reset) observer_->BeforeRemove(first, last);
    for (int row = last; row >= first; --row) RowWentFrom(row);
    rows_.erase(rows_.begin() + (first - 1), rows_.begin() + last);
    if (!reset) observer_->RowsRemoved(first, last);
  }
  if (reset) observer_->RowsReset();
}

void ListRows::Clear() {
  observer_->BeforeReset();
  rows_.clear();
  observer_->RowsReset();
}

void ListRows::Exchange(int upper) {
  Row* a = At(upper);
  Row* b = At(upper + 1);
  std::swap(a->cells, b->cells);
  std::swap(a->folded, b->folded);
  std::swap(a->icon, b->icon);
  // The lower one had no details yet and would be passed over in its new place.
  if (form_.DetailsCursor == upper) form_.DetailsCursor = upper - 1;
}

// From the end that the rows move to, so that a block moves as one.
std::vector<int> ListRows::MoveSelected(int step) {
  std::vector<int> moved = SelectedRows();
  if (moved.empty()) return moved;
  const int first = std::min(moved.front(), moved.front() + step);
  const int last = std::max(moved.back(), moved.back() + step);
  if (step > 0) std::reverse(moved.begin(), moved.end());
  for (const int row : moved) {
    Exchange(std::min(row, row + step));
    At(row)->selected = false;
    At(row + step)->selected = true;
  }
  observer_->RowsChanged(first, last);
  observer_->SelectionMoved(first, last, step);
  return moved;
}

void ListRows::TakeOnForRemoval(const std::vector<int>& rows) {
  ForgetRemoval();
  for (const int row : rows) {
    if (Row* found = At(row)) found->for_removal = true;
  }
}

int ListRows::FirstForRemoval() const {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [](const auto& row) { return row->for_removal; });
  return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin()) + 1;
}

void ListRows::ForgetRemoval() {
  for (const auto& row : rows_) row->for_removal = false;
}

void ListRows::UpdateNumbers() {
  if (!rows_.empty()) observer_->RowsChanged(1, RowCount());
  UpdateNumberOfitemsStatus();
}

void ListRows::UpdateNumberOfitemsStatus() {
  SetStatus(
      Fill(Tr("%1 items in list.", "%1 items in list.", static_cast<unsigned long>(RowCount())),
           std::to_string(RowCount())));
}

void ListRows::SetStatus(const std::string& text) {
  if (status_ == text) return;
  status_ = text;
  observer_->StatusText(status_);
}

void ListRows::EnsureVisible(int row) {
  if (At(row) != nullptr) observer_->EnsureVisible(row);
}

}  // namespace kv
