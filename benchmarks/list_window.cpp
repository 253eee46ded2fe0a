// A full list under the user's hand, rules only: 9999 rows with all details filled in, half of the
// texts outside ASCII. To stay below, in ms: sort 50, shuffle 50, rebuild of the rows 100, one key
// stroke of the quick search 10.

#include "playlist/list_order.h"
#include "playlist/list_rows.h"
#include "playlist/quick_search.h"
#include "system/text_platform_qt.h"

#include <benchmark/benchmark.h>
#include <optional>
#include <string>

namespace kv {
namespace {

struct NoDetails : RowDetails {
  void AddSubItem(int /*row*/) override {}
  void Restart() override {}
  void Stop() override {}
};

struct NoServices : ShellServices {
  int SendToRecycleBin(const std::string& /*path*/, bool /*confirm*/, bool /*silent*/) override {
    return 1;
  }
  int ShellOpenDocument(const std::string& /*file*/, const std::string& /*parameters*/,
                        const std::string& /*folder*/, const std::string& /*verb*/) override {
    return 0;
  }
  void PlaySoundEx(const std::string& /*file*/, bool /*wait*/, bool /*loop*/, bool /*no_stop*/,
                   bool /*no_default*/) override {}
};

struct NoDialogs : Dialogs {
  BoxAnswer ShowMessageBox(const MessageBoxRequest& /*request*/) override { return BoxAnswer::kOk; }
  FileDialogResult ShowFileDialog(const FileDialogRequest& /*request*/) override { return {}; }
  ColorDialogResult ShowColorDialog(std::int32_t /*initial*/,
                                    const CustomColors& /*custom*/) override {
    return {};
  }
  std::string BrowseDirectorysOnly(const std::string& /*title*/,
                                   const std::string& /*start*/) override {
    return {};
  }
};

struct NoPump : MessagePump {
  void PumpOnce() override {}
  void WaitAndPump(int /*milliseconds*/) override {}
};

struct FullList : ListOrderHost, QuickSearchHost {
  FullList() {
    session.PlaylistWindowLoaded = true;
    for (int i = 0; i < kPlaylistLimit; ++i) {
      const std::string number = std::to_string((i * 7919) % 10007);
      std::string path = "/home/user/Music/Some Artist/Album of ";
      path += number;
      path += i % 2 != 0 ? "/Some Title " : "/Песня о чём-то ";
      path += number;
      list.add(path += ".mp3");
    }
    rows.FillPlaylist("");
    FillDetails();
  }

  void FillDetails() {
    for (int row = 1; row <= rows.RowCount(); ++row) {
      const bool latin = row % 2 != 0;
      const std::string number = std::to_string(row);
      rows.SetDetailsOf(row, {.time = "00:03:25",
                              .file_size = number + ".00 KB",
                              .artist = latin ? "Some Artist" : "Какой-то артист",
                              .album = latin ? "Album of " + number : "Альбом " + number,
                              .title = latin ? "Some Title " + number : "Песня " + number,
                              .genre = "Rock",
                              .bitrate = "192",
                              .mode = "Joint stereo",
                              .frequency = "44100",
                              .extension = "mp3"});
    }
  }

  void UpdateFileDisp(const std::string& /*text*/) override {}
  void SetBusyPointer(bool /*on*/) override {}
  void LockWindowRedraw(bool /*locked*/) override {}
  void PlaylistSetNext(int /*index*/) override {}

  TextPlatformQt text;
  NoDetails details;
  NoServices services;
  NoDialogs dialogs;
  NoPump pump;
  Settings settings;
  Session session;
  PlaylistForm form;
  OSTList list{text};
  ListRows rows{list, form, settings, text};
  ListOrder order{list, rows,     form,    details, settings, session,
                  text, services, dialogs, pump,    *this};
  QuickSearch quick{list, rows, settings, session, text, *this};
};

void Sort(benchmark::State& state) {
  FullList list;
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    list.order.RandomizePlaylist();
    if (state.range(0) > 0) list.FillDetails();
    state.ResumeTiming();
    list.order.SortPlaylist(static_cast<int>(state.range(0)));
  }
}
BENCHMARK(Sort)->Arg(-1)->Arg(6)->Unit(benchmark::kMillisecond);

void Shuffle(benchmark::State& state) {
  FullList list;
  for ([[maybe_unused]] const auto _ : state) list.order.RandomizePlaylist();
}
BENCHMARK(Shuffle)->Unit(benchmark::kMillisecond);

void RebuildRows(benchmark::State& state) {
  FullList list;
  for ([[maybe_unused]] const auto _ : state) list.rows.FillPlaylist("");
}
BENCHMARK(RebuildRows)->Unit(benchmark::kMillisecond);

void RemoveEverySecond(benchmark::State& state) {
  std::optional<FullList> list;
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    list.emplace();
    for (int row = 1; row <= list->rows.RowCount(); row += 2) list->rows.Select(row, true);
    state.ResumeTiming();
    list->order.RemoveSel(false);
  }
}
BENCHMARK(RemoveEverySecond)->Unit(benchmark::kMillisecond)->Iterations(5);

void FirstKeyStroke(benchmark::State& state) {
  FullList list;
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    list.rows.DropFolded();
    state.ResumeTiming();
    list.quick.Check("*7*");
  }
}
BENCHMARK(FirstKeyStroke)->Unit(benchmark::kMillisecond);

// Nothing found, one in many, everything.
void KeyStroke(benchmark::State& state, const char* pattern) {
  FullList list;
  list.quick.Check("*");
  for ([[maybe_unused]] const auto _ : state) list.quick.Check(pattern);
}
BENCHMARK_CAPTURE(KeyStroke, none, "*no such text*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(KeyStroke, many_stars, "*e*e*e*e*x*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(KeyStroke, classes, "*[ч-я]?[!a-z]##")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(KeyStroke, all, "*")->Unit(benchmark::kMillisecond);

void KeyStrokeOverPaths(benchmark::State& state) {
  FullList list;
  list.session.PlaylistWindowLoaded = false;
  list.quick.Check("*");
  for ([[maybe_unused]] const auto _ : state) list.quick.Check("*песня*7*");
}
BENCHMARK(KeyStrokeOverPaths)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kv

BENCHMARK_MAIN();
