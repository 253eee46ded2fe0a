// The rows of `frmPlaylist` as data: what the window shows of the list, line by line.
//
// Row n shows item n of the list; while many entries come or go the two may differ in number, and
// nothing here minds. The rules that fill, sort, search and remove rows work on this class alone; a
// window follows it through `RowsObserver` and paints. Rows and sub-items count from 1; the number
// column is the row's place and not stored. Owned beside the list, so that a window can come and go
// in the middle of an operation. Interface thread only.
#pragma once

#include "playlist/list_window.h"
#include "playlist/media_details.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_form.h"
#include "state/settings.h"
#include "system/translation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// The columns; the value is the number of the sub-item, 0 the row's own text.
enum class PlaylistColumn : int {
  kNo,
  kFilename,
  kTime,
  kFileSize,
  kArtist,
  kAlbum,
  kTitle,
  kGenre,
  kBitrate,
  kMode,
  kFrequency,
  kExt,
};

struct PlaylistColumnInfo {
  PlaylistColumn column;
  std::string_view title;
  bool right_aligned;      // numbers
  int width;               // twips, until the user has chosen another
  std::string_view uncut;  // a text that is never cut in that width, whatever the font
};

inline constexpr std::array<PlaylistColumnInfo, kPlaylistColumns> kPlaylistColumnTable = {{
    {PlaylistColumn::kNo, TrLater("No"), true, 750, "0000"},
    {PlaylistColumn::kFilename, TrLater("Filename"), false, 4500, TrLater("Filename")},
    {PlaylistColumn::kTime, TrLater("Time"), true, 1050, "00:00:00"},
    {PlaylistColumn::kFileSize, TrLater("File size"), true, 1200, "1000.00 MB"},
    {PlaylistColumn::kArtist, TrLater("Artist"), false, 2100, TrLater("Artist")},
    {PlaylistColumn::kAlbum, TrLater("Album"), false, 2100, TrLater("Album")},
    {PlaylistColumn::kTitle, TrLater("Title"), false, 2700, TrLater("Title")},
    {PlaylistColumn::kGenre, TrLater("Genre"), false, 1350, TrLater("Genre")},
    {PlaylistColumn::kBitrate, TrLater("Bitrate"), true, 900, TrLater("Bitrate")},
    {PlaylistColumn::kMode, TrLater("Mode"), false, 1350, "Joint stereo"},
    {PlaylistColumn::kFrequency, TrLater("Frequency"), true, 1200, TrLater("Frequency")},
    {PlaylistColumn::kExt, TrLater("Ext."), false, 750, TrLater("Ext.")},
}};

// Sub-items 1 to kLastSubItem stand behind the row's own text.
inline constexpr int kLastSubItem = static_cast<int>(kPlaylistColumns) - 1;

enum class RowIcon : std::uint8_t { kAudio = 1, kOtherMedia = 2, kInternet = 3 };

// The picture of an entry: internet for "http://" and "ftp://" alone, audio by the extension.
RowIcon GetIcon(std::string_view path);

// "0007"; numbers above 9999 take the digits that they need.
std::string RowNumberText(int row);

// What a window does when rows change. Each change of their number is told before and after, as
// item models want it; `first` and `last` are rows, ends included.
class RowsObserver {
 public:
  virtual ~RowsObserver() = default;
  virtual void BeforeReset() {}
  virtual void RowsReset() {}
  virtual void BeforeInsert(int /*first*/, int /*last*/) {}
  virtual void RowsInserted(int /*first*/, int /*last*/) {}
  virtual void BeforeRemove(int /*first*/, int /*last*/) {}
  virtual void RowsRemoved(int /*first*/, int /*last*/) {}
  // Texts, icon, number or mark.
  virtual void RowsChanged(int /*first*/, int /*last*/) {}
  // Only when a row's state did change, so that a window may tell here what it was told there.
  virtual void SelectionChanged(int /*first*/, int /*last*/) {}
  // The selected rows from `first` to `last`, and only they, have moved by `step`.
  virtual void SelectionMoved(int first, int last, int /*step*/) { SelectionChanged(first, last); }
  virtual void EnsureVisible(int /*row*/) {}
  virtual void StatusText(const std::string& /*text*/) {}  // panel 1 of the status bar
};

// Who fills the details columns in, see details_loader.h.
class RowDetails {
 public:
  virtual ~RowDetails() = default;
  // Fills one row in soon, when details are shown.
  virtual void AddSubItem(int row) = 0;
  // The rows are new and empty: begins again at the first one, when details are shown.
  virtual void Restart() = 0;
  // Stops at once.
  virtual void Stop() = 0;
};

// The texts of one row, sub-items 1 to kLastSubItem, in one piece of memory.
class CellTexts {
 public:
  using Views = std::array<std::string_view, static_cast<std::size_t>(kLastSubItem)>;

  void Set(const Views& cells);
  // Empty outside 1 to kLastSubItem.
  std::string_view Text(int sub_item) const;
  // The same in lower case. A row whose texts are all ASCII is folded in one piece.
  CellTexts Lower(const TextPlatform& platform) const;

 private:
  std::string text_;
  std::array<std::uint32_t, static_cast<std::size_t>(kLastSubItem)> ends_{};
};

class ListRows : public ListWindow {
 public:
  // All must outlive this object.
  ListRows(const OSTList& list, PlaylistForm& form, const Settings& settings,
           const TextPlatform& text);

  // Null: nobody. Both must outlive this object or be taken away first. A new observer is told the
  // status text at once.
  void SetObserver(RowsObserver* observer);
  void SetDetails(RowDetails* details);

  // The rows' part of the window's load and end: makes `PlaylistForm` new and all rows from the
  // list; sets `Closing`, stops the details and drops the rows.
  void Form_Load();
  void Form_Unload();

  // ListWindow. An appended row shows the last part of a URL, a rebuilt one the whole.
  void FillPlaylist(const std::string& path) override;
  int RowCount() const override { return static_cast<int>(rows_.size()); }

  // What a row shows. Outside 1 to RowCount(): empty, false, kOtherMedia. `sub_item` 0 is the
  // number; the text of others is valid until the row changes.
  std::string NumberText(int row) const;
  std::string_view SubItem(int row, int sub_item) const;
  RowIcon Icon(int row) const;
  bool IsMarked(int row) const;  // drawn as playing: bold, in the playing colour

  // The sub-items in lower case, made when first asked for and kept until the row changes.
  const CellTexts& Folded(int row) const;
  void DropFolded();  // gives their memory back

  // True when the row stands for item `row` of the list as it is now.
  bool ShowsItem(int row) const;

  void SetDetailsOf(int row, const MediaDetails& details);
  void RemoveDetails();  // clears sub-items 2 and up of all rows

  // Brings the mark to the playing row, which comes into sight when the user wants to follow it.
  // Called every 100 ms; costs nothing while the mark is right.
  void MarkPlaying();
  // Scrolls to the playing row.
  void FindPlaying();

  bool IsSelected(int row) const;
  void Select(int row, bool on);
  void SelectRange(int first, int last, bool on);
  void SelectOnly(int row);  // outside the rows: none
  void SelectAll() { SelectRange(1, RowCount(), true); }
  std::vector<int> SelectedRows() const;  // ascending

  // A row was clicked: the next find goes on below it.
  void ItemClick(int row);

  // Removes rows, given in ascending order. `MarkedRow` and `DetailsCursor` stay with their rows.
  void Remove(const std::vector<int>& rows);
  void Clear();
  // Exchanges every selected row with its neighbour in the direction of `step` (-1 or 1), which it
  // must have, and takes the selection along; a window hears of it once. Returns the rows as they
  // were, in the order in which they went.
  std::vector<int> MoveSelected(int step);

  // Rows that a long removal has taken on. The note goes along with the row and is no selection,
  // so that what the user clicks meanwhile is not removed.
  void TakeOnForRemoval(const std::vector<int>& rows);
  int FirstForRemoval() const;  // 0 none
  void ForgetRemoval();

  void UpdateNumbers();
  void UpdateNumberOfitemsStatus();  // "12 items in list."
  void SetStatus(const std::string& text);
  const std::string& Status() const { return status_; }
  void EnsureVisible(int row);

 private:
  struct Row {
    CellTexts cells;
    std::unique_ptr<CellTexts> folded;
    RowIcon icon = RowIcon::kOtherMedia;
    bool selected = false;
    bool marked = false;
    bool for_removal = false;
  };

  std::unique_ptr<Row> MakeRow(const std::string& path, bool whole_url) const;
  Row* At(int row) const;
  // Exchanges all that two neighbours show, but for number, mark and selection.
  void Exchange(int upper);
  void SetMark(int row, bool on);
  // Carries the row numbers that are remembered past a row that goes.
  void RowWentFrom(int row);

  const OSTList& list_;
  PlaylistForm& form_;
  const Settings& settings_;
  const TextPlatform& text_;
  RowsObserver nobody_;
  RowsObserver* observer_ = &nobody_;
  RowDetails* details_ = nullptr;
  std::vector<std::unique_ptr<Row>> rows_;
  std::string status_;
};

}  // namespace kv
