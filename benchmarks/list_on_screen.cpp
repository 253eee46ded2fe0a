// A full list in its real window: 9999 rows with all details, the window open and painted after
// each step. To stay below, in ms: load the list 100, sort it 50, shuffle it 50, one key stroke of
// the quick search 10. Moving a third of the rows at once has no target; it must not be felt.

#include "playlist/m3u_file.h"
#include "playlist/playlist_window.h"

#include <QApplication>

#include <benchmark/benchmark.h>
#include <string>

namespace kv {
namespace {

constexpr int kEntries = kPlaylistLimit;

std::string PathOf(int index) {
  const std::string number = std::to_string((index * 7919) % 10007);
  return "/home/user/Music/Some Artist/Album of " + number +
         (index % 2 != 0 ? "/Some Title " : "/Песня о чём-то ") + number + ".mp3";
}

struct FullWindow : WindowRoom {
  FullWindow() {
    for (int i = 0; i < kEntries; ++i) list.add(PathOf(i));
    session.PlaylistWindowLoaded = true;
    Open();
    FillDetails();
    Paint();
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

  static void Paint() { QCoreApplication::processEvents(); }
};

// Reading the text of the file, the entries, and the rows of the window.
void Load(benchmark::State& state) {
  FullWindow window;
  std::string text;
  for (int i = 0; i < kEntries; ++i) text += PathOf(i) + "\r\n";
  for ([[maybe_unused]] const auto _ : state) {
    window.list.Clear();
    for (const std::string_view line : SplitM3u(text)) window.list.add(std::string(line));
    window.rows.FillPlaylist("");
    FullWindow::Paint();
  }
  if (window.rows.RowCount() != kEntries) state.SkipWithError("rows are missing");
}
BENCHMARK(Load)->Unit(benchmark::kMillisecond);

// -1 by name, 6 by title.
void Sort(benchmark::State& state) {
  FullWindow window;
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    window.order.RandomizePlaylist();
    window.FillDetails();
    FullWindow::Paint();
    state.ResumeTiming();
    window.order.SortPlaylist(static_cast<int>(state.range(0)));
    FullWindow::Paint();
  }
}
BENCHMARK(Sort)->Arg(-1)->Arg(6)->Unit(benchmark::kMillisecond);

void Shuffle(benchmark::State& state) {
  FullWindow window;
  for ([[maybe_unused]] const auto _ : state) {
    window.order.RList();
    FullWindow::Paint();
  }
}
BENCHMARK(Shuffle)->Unit(benchmark::kMillisecond);

void MoveEveryThird(benchmark::State& state) {
  FullWindow window;
  for (int row = 2; row < kEntries; row += 3) window.rows.Select(row, true);
  FullWindow::Paint();
  bool down = true;
  for ([[maybe_unused]] const auto _ : state) {
    if (down) {
      window.order.MoveFilesDown();
    } else {
      window.order.MoveFilesUp();
    }
    down = !down;
    FullWindow::Paint();
  }
}
BENCHMARK(MoveEveryThird)->Unit(benchmark::kMillisecond);

// The first folds all texts, every later one finds them folded.
void KeyStroke(benchmark::State& state) {
  FullWindow window;
  const bool first = state.range(0) != 0;
  window.quick.Check("*");
  for ([[maybe_unused]] const auto _ : state) {
    state.PauseTiming();
    if (first) window.rows.DropFolded();
    state.ResumeTiming();
    window.quick.Check("*7*");
  }
}
BENCHMARK(KeyStroke)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kv

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
