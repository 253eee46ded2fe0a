// How long a jump takes until its picture is there: the player's engine against libmpv driven
// directly, in turn in one process, both halted, both at the same size on the same decoder.
//
// seeking FILM [JUMPS]: ours ends when the window has painted the new picture; theirs when libmpv
// has rendered it into memory, which nobody sees yet. Prints medians, 95th percentiles and their
// ratio.
#include "engine/dshow_control.h"
#include "engine/mpv_engine.h"
#include "engine/mpv_library.h"
#include "engine/video_surface.h"
#include "system/message_pump_qt.h"

#include <QApplication>
#include <mpv/render.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <clocale>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <vector>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kRestMilliseconds = 40;  // between two jumps
constexpr double kGiveUp = 5000.0;     // milliseconds

double Milliseconds(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// libmpv as its own examples use it, with a picture in memory.
class Direct {
 public:
  explicit Direct(const std::string& film) : core_(Mpv().create()) {
    for (const auto& [name, value] : {std::pair{"config", "no"},
                                      {"vo", "libmpv"},
                                      {"ao", "null"},
                                      {"hwdec", "no"},
                                      {"pause", "yes"},
                                      {"zimg-scaler", "bicubic"},
                                      {"keep-open", "yes"}}) {
      Mpv().set_option_string(core_, name, value);
    }
    Mpv().initialize(core_);
    char api[] = MPV_RENDER_API_TYPE_SW;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (Mpv().render_context_create(&context_, core_, parameters) < 0) std::exit(1);
    Mpv().render_context_set_update_callback(context_, &Direct::OnUpdate, this);
    Command({"loadfile", film.c_str(), nullptr});
    NextPicture();
  }
  Direct(const Direct&) = delete;
  Direct& operator=(const Direct&) = delete;
  ~Direct() {
    Mpv().render_context_free(context_);
    Mpv().terminate_destroy(core_);
  }

  double Jump(double seconds) {
    Drain();
    const std::string to = std::to_string(seconds);
    const auto begin = Clock::now();
    Command({"seek", to.c_str(), "absolute+exact", nullptr});
    NextPicture();
    return Milliseconds(begin);
  }

 private:
  static void OnUpdate(void* self) {
    auto* direct = static_cast<Direct*>(self);
    const std::lock_guard lock(direct->mutex_);
    direct->update_ = true;
    direct->wake_.notify_one();
  }
  void Command(std::array<const char*, 4> arguments) {
    Mpv().command_async(core_, 0, arguments.data());
  }
  // Takes what is there already.
  void Drain() {
    while (Mpv().wait_event(core_, 0.0)->event_id != MPV_EVENT_NONE) {
    }
    const std::lock_guard lock(mutex_);
    update_ = false;
  }
  void NextPicture() {
    while (true) {
      {
        std::unique_lock lock(mutex_);
        if (!wake_.wait_for(lock, std::chrono::seconds(5), [this] { return update_; })) {
          std::exit(1);
        }
        update_ = false;
      }
      if ((Mpv().render_context_update(context_) & MPV_RENDER_UPDATE_FRAME) == 0) continue;
      int size[2] = {kWidth, kHeight};
      std::size_t stride = std::size_t{kWidth} * 4;
      char format[] = "bgra";
      mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                       {MPV_RENDER_PARAM_SW_FORMAT, format},
                                       {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                       {MPV_RENDER_PARAM_SW_POINTER, picture_->data()},
                                       {MPV_RENDER_PARAM_INVALID, nullptr}};
      Mpv().render_context_render(context_, parameters);
      return;
    }
  }

  using Picture = std::array<std::uint8_t, std::size_t{kWidth} * kHeight * 4>;

  mpv_handle* core_;
  mpv_render_context* context_ = nullptr;
  std::unique_ptr<Picture> picture_ = std::make_unique<Picture>();
  std::mutex mutex_;
  std::condition_variable wake_;
  bool update_ = false;
};

// The engine with a window.
class Ours {
 public:
  explicit Ours(const std::string& film) {
    surface_.resize(kWidth, kHeight);
    surface_.show();
    if (!movie_.DS_OpenFile(film, 0, 0, kWidth, kHeight, surface_.Handle())) std::exit(1);
    movie_.DS_Play();
    movie_.DS_Pause();
    Rest(500);
  }
  ~Ours() {
    movie_.DS_Remove();
    engine_.Shutdown(1000);
  }

  double Jump(double seconds) {
    const auto painted = engine_.Video().PaintedPictures();
    const auto begin = Clock::now();
    movie_.DS_SetPosition(seconds);
    while (engine_.Video().PaintedPictures() == painted) {
      pump_.WaitAndPump(20);
      if (Milliseconds(begin) > kGiveUp) std::exit(1);
    }
    return Milliseconds(begin);
  }
  void Rest(int milliseconds) {
    for (const auto begin = Clock::now(); Milliseconds(begin) < milliseconds;) pump_.WaitAndPump(5);
  }

 private:
  MessagePumpQt pump_;
  MpvEngine engine_{pump_, VideoPath::kSoftware};
  VideoSurface surface_{engine_.Video().Surfaces(), nullptr};
  clsDShowControl movie_{engine_, pump_};
};

double Print(const char* name, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const double p95 = times[times.size() * 95 / 100];
  std::printf("  %-12s median %8.1f   p95 %8.1f   max %8.1f\n", name, times[times.size() / 2], p95,
              times.back());
  return p95;
}

int Run(const std::string& film, int jumps) {
  Ours ours(film);
  Direct direct(film);
  std::mt19937 random(1);
  std::uniform_real_distribution<double> place(0.5, 19.0);
  std::vector<double> our_times;
  std::vector<double> their_times;
  for (int i = 0; i < jumps; ++i) {
    const double to = place(random);
    for (int turn = 0; turn < 2; ++turn) {
      if ((turn == 0) == (i % 2 == 0)) {
        our_times.push_back(ours.Jump(to));
      } else {
        their_times.push_back(direct.Jump(to));
      }
      ours.Rest(kRestMilliseconds);
    }
  }
  std::printf("Jump to its picture, ms, %d jumps each in turn\n", jumps);
  const double our_p95 = Print("kestrelview", our_times);
  const double their_p95 = Print("libmpv", their_times);
  std::printf("  ratio of p95 %.2f\n", our_p95 / their_p95);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace kv

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("PULSE_SERVER", "unix:/nonexistent");
  const QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  if (argc < 2) {
    std::fprintf(stderr, "usage: seeking FILM [JUMPS]\n");
    return EXIT_FAILURE;
  }
  return kv::Run(argv[1], argc > 2 ? std::max(1, std::atoi(argv[2])) : 100);
}
