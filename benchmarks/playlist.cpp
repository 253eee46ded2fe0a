// The list's operations and its files at the limit of 9999 entries, each beside the plainest way to
// do the same (`Plain...`): parallel vectors of values for the list, whole lines for the files.
#include "playlist/asx_file.h"
#include "playlist/list_adding.h"
#include "playlist/m3u_file.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_files.h"
#include "system/ascii_text.h"
#include "system/name_tests.h"
#include "system/special_folders.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr int kEntries = kPlaylistLimit;
constexpr const char* kExtensions =
    "*.mkv;*.mp4;*.avi;*.mpg;*.mpeg;*.ts;*.mov;*.webm;*.wmv;*.asf;*.ogv;*.mp3;*.mp2;*.ogg;*.oga;"
    "*.opus;*.flac;*.wav;*.m4a;*.aac;*.ac3;*.dts;*.wma;*.ape;*.mka;*.aiff;*.au;*.m3u;*.kvr";

class AsciiCase : public TextPlatform {
 public:
  std::string Lower(std::string_view text) const override { return LowerAscii(text); }
  std::string Upper(std::string_view text) const override { return std::string(text); }
  std::string DecimalSeparator() const override { return "."; }
};

std::string NameOf(int index) {
  return "/home/user/Music/Some Artist/Some Album/" + std::to_string(index) + " Song.mp3";
}

void Fill(OSTList& list) {
  for (int i = 1; i <= kEntries; ++i) list.add(NameOf(i));
}

// All columns as vectors of values, each shifted by every removal.
struct PlainList {
  std::array<std::vector<std::string>, 4> texts;
  std::vector<OSTList::Picture> pictures;
  std::vector<bool> marks;

  void Add(const std::string& item) {
    for (auto& column : texts) column.emplace_back();
    texts[0].back() = item;
    pictures.emplace_back();
    marks.push_back(false);
  }
  void Remove(std::ptrdiff_t at) {
    for (auto& column : texts) column.erase(column.begin() + at);
    pictures.erase(pictures.begin() + at);
    marks.erase(marks.begin() + at);
  }
};

void Fill(PlainList& list) {
  for (int i = 1; i <= kEntries; ++i) list.Add(NameOf(i));
}

void Add(benchmark::State& state) {
  const AsciiCase text;
  while (state.KeepRunning()) {
    OSTList list(text);
    Fill(list);
    benchmark::DoNotOptimize(list.Count());
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}
void PlainAdd(benchmark::State& state) {
  while (state.KeepRunning()) {
    PlainList list;
    Fill(list);
    benchmark::DoNotOptimize(list.marks.size());
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}

// One removal and one addition, so that the list keeps its length.
void RemoveAtRandom(benchmark::State& state) {
  const AsciiCase text;
  OSTList list(text);
  Fill(list);
  std::mt19937 random(1);
  while (state.KeepRunning()) {
    list.Remove(1 + static_cast<int>(random() % kEntries));
    list.add("/x.mp3");
  }
}
void PlainRemoveAtRandom(benchmark::State& state) {
  PlainList list;
  Fill(list);
  std::mt19937 random(1);
  while (state.KeepRunning()) {
    list.Remove(static_cast<std::ptrdiff_t>(random() % kEntries));
    list.Add("/x.mp3");
  }
}

void RemoveByText(benchmark::State& state) {
  const AsciiCase text;
  OSTList list(text);
  Fill(list);
  while (state.KeepRunning()) {
    OSTList::Key key = std::string("/HOME/nowhere");
    list.Remove(key);
  }
}

void RemoveHalfMarked(benchmark::State& state) {
  const AsciiCase text;
  while (state.KeepRunning()) {
    state.PauseTiming();
    OSTList list(text);
    Fill(list);
    for (int i = 1; i <= kEntries; i += 2) list.SetItemMarkDelete(i, true);
    state.ResumeTiming();
    list.RemoveAllMarkedForDelete();
  }
}
// Removes the first mark and looks again from the start.
void PlainRemoveHalfMarked(benchmark::State& state) {
  while (state.KeepRunning()) {
    state.PauseTiming();
    PlainList list;
    Fill(list);
    for (std::size_t i = 0; i < kEntries; i += 2) list.marks[i] = true;
    state.ResumeTiming();
    for (auto at = list.marks.begin();
         (at = std::find(list.marks.begin(), list.marks.end(), true)) != list.marks.end();) {
      list.Remove(at - list.marks.begin());
    }
  }
}

void MoveDownAndUp(benchmark::State& state) {
  const AsciiCase text;
  OSTList list(text);
  Fill(list);
  while (state.KeepRunning()) {
    list.MoveItemDown(5000);
    list.MoveItemUp(5001);
  }
}

void PlayableName(benchmark::State& state) {
  const std::string name = NameOf(1);
  while (state.KeepRunning()) benchmark::DoNotOptimize(IsPlayableName(name, kExtensions));
}

// The rules alone: no rows, no scan window, nobody who asks.
class Files : public PlaylistFilesHost,
              public ListAddingHost,
              public Dialogs,
              public MessagePump,
              public Download {
 public:
  explicit Files(bool playlist_folder) : path_(GetTempFolder() + "kv_bench_XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
    session_.SupportedExtensions = kExtensions;
    list_file_ = path_ + "/list.m3u";
    for (int i = 1; i <= kEntries; ++i) {
      list.add((playlist_folder ? path_ + "/" : "/home/user/Music/") + std::to_string(i) +
               " Song.mp3");
    }
    files.LoadPlaylist(path_ + "/none.m3u");
    files.SavePlaylist(list_file_);
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() override {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::string& ListFile() const { return list_file_; }

  ListWindow* LoadedListWindow() override { return nullptr; }
  ScanWindow* OpenScanWindow() override { return nullptr; }
  void OpenFile(const std::string& /*path*/) override {}
  void OpenFile(const std::string& /*path*/, bool /*list*/, bool /*play*/) override {}
  bool EngineRunning() const override { return false; }
  void PressPlay() override {}
  void UpdateFileDisp(const std::string& /*text*/) override {}
  void SetBusyPointer(bool /*busy*/) override {}
  BoxAnswer ShowMessageBox(const MessageBoxRequest& /*request*/) override { return BoxAnswer::kOk; }
  FileDialogResult ShowFileDialog(const FileDialogRequest& /*request*/) override { return {}; }
  ColorDialogResult ShowColorDialog(std::int32_t /*initial*/, const CustomColors& custom) override {
    return {-1, custom};
  }
  std::string BrowseDirectorysOnly(const std::string& /*title*/,
                                   const std::string& /*start*/) override {
    return {};
  }
  void PumpOnce() override {}
  void WaitAndPump(int /*milliseconds*/) override {}
  bool Get_File(const std::string& /*url*/, const std::string& /*local_name*/) override {
    return false;
  }

 private:
  std::string path_;
  std::string list_file_;
  AsciiCase text_;
  Settings settings_;
  Session session_;
  Registry registry_{path_ + "/registry.ini"};

 public:
  OSTList list{text_};
  ListAdding adding{*this, list, session_, *this, *this};
  PlaylistFiles files{
      *this,
      {list, adding, settings_, session_, *this, *this, *this, registry_, text_, path_ + "/"}};
};

void LoadM3u(benchmark::State& state) {
  Files player(state.range(0) != 0);
  while (state.KeepRunning()) player.files.LoadPlaylist(player.ListFile());
  if (player.list.Count() != kEntries) state.SkipWithError("entries are missing");
}
void PlainLoadM3u(benchmark::State& state) {
  const Files player(false);
  while (state.KeepRunning()) {
    std::ifstream file(player.ListFile(), std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    benchmark::DoNotOptimize(lines.size());
  }
}

void SaveM3u(benchmark::State& state) {
  Files player(state.range(0) != 0);
  while (state.KeepRunning()) player.files.SavePlaylist(player.ListFile());
}
// Not safe: truncates, then writes. The sync to the disk is what the other costs more.
void PlainSaveM3u(benchmark::State& state) {
  const Files player(false);
  while (state.KeepRunning()) {
    std::ofstream file(player.ListFile(), std::ios::binary);
    for (int i = 1; i <= kEntries; ++i) file << player.list.Item(i) << "\r\n";
  }
}
void MakeM3uText(benchmark::State& state) {
  const Files player(state.range(0) != 0);
  const AsciiCase text;
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(M3uText(player.list, player.ListFile(), false, text));
  }
}

// 50 MB that were made to be slow.
void HostileAsx(benchmark::State& state) {
  std::string tags;
  while (tags.size() < 50'000'000) tags += "<entry><title>";
  while (state.KeepRunning()) benchmark::DoNotOptimize(ParseAsx(tags));
}
void HostileM3u(benchmark::State& state) {
  std::string text;
  text.resize(50'000'000, '\r');
  while (state.KeepRunning()) benchmark::DoNotOptimize(SplitM3u(text));
}

BENCHMARK(Add)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainAdd)->Unit(benchmark::kMicrosecond);
BENCHMARK(RemoveAtRandom)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainRemoveAtRandom)->Unit(benchmark::kMicrosecond);
BENCHMARK(RemoveByText)->Unit(benchmark::kMicrosecond);
BENCHMARK(RemoveHalfMarked)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainRemoveHalfMarked)->Unit(benchmark::kMicrosecond);
BENCHMARK(MoveDownAndUp)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlayableName)->Unit(benchmark::kMicrosecond);
// 1: all entries lie in the playlist's folder, so that their lines are relative.
BENCHMARK(LoadM3u)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainLoadM3u)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveM3u)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainSaveM3u)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeM3uText)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(HostileAsx)->Unit(benchmark::kMillisecond);
BENCHMARK(HostileM3u)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kv

BENCHMARK_MAIN();
