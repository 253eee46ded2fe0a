// The list with its rows and all that works on them, as a main window would put them together; the
// window itself is a log.
#pragma once

#include "playlist/details_loader.h"
#include "playlist/list_order.h"
#include "playlist/list_rows.h"
#include "playlist/playlist_test.h"
#include "support/fake_pump.h"
#include "support/fake_shell_services.h"

namespace kv {

struct RowsLog : RowsObserver {
  void RowsChanged(int first, int last) override {
    for (int row = first; row <= last; ++row) changed.push_back(row);
  }
  void EnsureVisible(int row) override { seen.push_back(row); }
  void StatusText(const std::string& text) override { status.push_back(text); }

  std::vector<int> changed;
  std::vector<int> seen;
  std::vector<std::string> status;
};

struct ListRoom : ListOrderHost {
  ListRoom() { rows.SetObserver(&window); }

  void Load(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) list.add(path);
    rows.Form_Load();
    window = RowsLog{};
  }

  // A list of letters: "*" stands behind a selected one, "!" behind the one that plays.
  void Arrange(std::string_view letters) {
    std::vector<std::string> paths;
    std::vector<int> selected;
    for (const char letter : letters) {
      const int count = static_cast<int>(paths.size());
      if (letter == '*') selected.push_back(count);
      if (letter == '!') settings.PlaylistIndex = count;
      if (letter != '*' && letter != '!') paths.emplace_back(1, letter);
    }
    Load(paths);
    Select(selected);
  }
  std::string Arranged() const {
    std::string letters;
    for (int i = 1; i <= list.Count(); ++i) {
      letters += list.Item(i);
      if (rows.IsSelected(i)) letters += '*';
      if (settings.PlaylistIndex == i) letters += '!';
    }
    return letters;
  }

  std::vector<std::string> Items() const {
    std::vector<std::string> items;
    for (int i = 1; i <= list.Count(); ++i) items.push_back(list.Item(i));
    return items;
  }
  std::vector<std::string> Cells(int sub_item) const {
    std::vector<std::string> cells;
    for (int i = 1; i <= rows.RowCount(); ++i) cells.emplace_back(rows.SubItem(i, sub_item));
    return cells;
  }
  void Select(const std::vector<int>& selected) {
    rows.SelectRange(1, rows.RowCount(), false);
    for (const int row : selected) rows.Select(row, true);
  }
  // Lets the timers run, and the files that are wanted be read.
  void Run(int ticks) {
    for (int i = 0; i < ticks; ++i) {
      time.Advance(5);
      while (read_at_once && files.ReadOne()) {
      }
    }
  }

  void UpdateFileDisp(const std::string& /*text*/) override {}
  void SetBusyPointer(bool on) override { busy += on ? 1 : -1; }
  void LockWindowRedraw(bool locked) override { locks += locked ? 1 : -1; }

  int busy = 0;
  int locks = 0;
  bool read_at_once = true;
  std::vector<std::string> read;
  std::vector<double> draws;  // from the back; then 0

  FakeTextPlatform text;
  VirtualTime time;
  FakePump pump{&time};
  FakeShellServices services;
  ScriptedDialogs dialogs;
  Settings settings;
  Session session;
  PlaylistForm form;
  OSTList list{text};
  ListRows rows{list, form, settings, text};
  RowsLog window;
  DetailsReadAhead files{[this](const std::string& path) {
                           read.push_back(path);
                           MediaDetails details;
                           details.title = "T" + path;
                           return details;
                         },
                         DetailsReadAhead::Worker::kByHand};
  DetailsLoader loader{list, rows, form, settings, time, pump, files};
  ListOrder order{
      list, rows, form, loader, settings, session, text, services, dialogs, pump, *this, [this] {
        if (draws.empty()) return 0.0;
        const double next = draws.back();
        draws.pop_back();
        return next;
      }};
};

}  // namespace kv
