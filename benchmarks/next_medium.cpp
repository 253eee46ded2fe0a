// How long the next medium of the same kind takes to begin: the player's engine against libmpv
// driven directly with `loadfile ... replace`, in turn in one process.
//
// next_medium FILE1 FILE2 [RUNS]: two local sound files. Prints medians, extremes and the ratio.
// Both play into a null output, so that neither waits for a sound server.
#include "engine/dshow_control.h"
#include "engine/mpv_engine.h"
#include "engine/mpv_library.h"
#include "system/message_pump_qt.h"

#include <QApplication>

#include <algorithm>
#include <array>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;
constexpr double kMoving = 0.005;  // seconds; more than a position that only waits ever shows
constexpr int kSettleMilliseconds = 150;

double Milliseconds(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// Until the position of the new medium moves.
double OpenByEngine(clsDShowControl& movie, MessagePump& pump, const std::string& file) {
  const auto begin = Clock::now();
  if (!movie.DS_OpenFile(file, 0, 0, 1, 1, 0)) return -1.0;
  movie.DS_Play();
  while (movie.DS_GetPosition() < kMoving) pump.WaitAndPump(1);
  // What the clock has already counted was played before we looked.
  return Milliseconds(begin) - movie.DS_GetPosition() * 1000.0;
}

// Until the core says that it plays.
double OpenDirectly(mpv_handle* core, const std::string& file) {
  const std::array<const char*, 4> command = {"loadfile", file.c_str(), "replace", nullptr};
  const auto begin = Clock::now();
  Mpv().command_async(core, 0, const_cast<const char**>(command.data()));
  bool started = false;
  while (true) {
    const mpv_event* event = Mpv().wait_event(core, 5.0);
    if (event->event_id == MPV_EVENT_NONE) return -1.0;
    if (event->event_id == MPV_EVENT_START_FILE) started = true;
    if (event->event_id == MPV_EVENT_HOOK) {
      Mpv().hook_continue(core, static_cast<mpv_event_hook*>(event->data)->id);
    }
    if (started && event->event_id == MPV_EVENT_PLAYBACK_RESTART) return Milliseconds(begin);
  }
}

mpv_handle* MakeCore(bool gated) {
  mpv_handle* core = Mpv().create();
  for (const auto& [name, value] :
       {std::pair{"config", "no"}, {"vo", "null"}, {"ao", "null"}, {"idle", "yes"}}) {
    Mpv().set_option_string(core, name, value);
  }
  Mpv().initialize(core);
  if (gated) Mpv().hook_add(core, 0, "on_load", 0);
  return core;
}

void Print(const char* name, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  std::printf("  %-12s median %8.2f   min %8.2f   max %8.2f\n", name, times[times.size() / 2],
              times.front(), times.back());
}

int Run(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: next_medium FILE1 FILE2 [RUNS]\n");
    return EXIT_FAILURE;
  }
  const std::array<std::string, 2> files = {argv[1], argv[2]};
  const int runs = argc > 3 ? std::max(1, std::atoi(argv[3])) : 21;
  MessagePumpQt pump;
  MpvEngine engine(pump, VideoPath::kSoftware);
  clsDShowControl movie(engine, pump);
  const std::array<mpv_handle*, 2> cores = {MakeCore(false), MakeCore(true)};

  std::vector<double> ours;
  std::array<std::vector<double>, 2> direct;
  for (int i = 0; i <= runs; ++i) {
    const std::string& file = files[static_cast<std::size_t>(i % 2)];
    const double engine_time = OpenByEngine(movie, pump, file);
    const auto settle = Clock::now();
    while (Milliseconds(settle) < kSettleMilliseconds) pump.WaitAndPump(5);
    movie.DS_Pause();
    for (std::size_t which = 0; which < cores.size(); ++which) {
      const double direct_time = OpenDirectly(cores[which], file);
      const auto rest = Clock::now();
      while (Milliseconds(rest) < kSettleMilliseconds) Mpv().wait_event(cores[which], 0.01);
      if (i > 0) direct[which].push_back(direct_time);
    }
    if (i > 0) ours.push_back(engine_time);  // the first opens what the others find open
  }
  std::printf("Next medium to its first sound, ms, %d runs each in turn\n", runs);
  Print("kestrelview", ours);
  Print("libmpv", direct[0]);
  Print("libmpv+hook", direct[1]);
  std::sort(ours.begin(), ours.end());
  std::sort(direct[0].begin(), direct[0].end());
  std::printf("  ratio of medians %.2f\n", ours[ours.size() / 2] / direct[0][direct[0].size() / 2]);
  movie.DS_Remove();
  for (mpv_handle* core : cores) Mpv().terminate_destroy(core);
  engine.Shutdown(1000);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace kv

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("PULSE_SERVER", "unix:/nonexistent");
  const QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  return kv::Run(argc, argv);
}
