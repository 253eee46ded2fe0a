// The bench of the fake graph: media are rows, time is virtual.

#include "graph_bench.h"
#include "support/fake_graph.h"
#include "support/fake_pump.h"
#include "support/virtual_time.h"

namespace kv {
namespace {

class FakeBench : public GraphBench {
 public:
  FakeBench() {
    const FakeMedium film{.duration = 3.0, .width = 160, .height = 120, .frames_per_second = 25.0};
    factory_.media["film"] = film;
    factory_.media["slow"] = film;
    factory_.media["slow"].duration = 5.0;
    factory_.media["dual"] = film;
    factory_.media["dual"].tracks = {{TrackKind::kSound, 1, "eng", "", "vorbis", true},
                                     {TrackKind::kSound, 2, "ger", "", "vorbis"},
                                     {TrackKind::kSubtitle, 1, "eng", "", "subrip", true},
                                     {TrackKind::kSubtitle, 2, "ger", "Alles", "subrip"}};
    for (MediaTrack& track : factory_.media["dual"].tracks) track.selected = track.is_default;
    factory_.media["tone"] = {.duration = 2.0};
    factory_.media["bad"] = {.renders = false};
    for (auto& [name, medium] : factory_.media) medium.render_milliseconds = 50;
  }

  std::shared_ptr<FilterGraph> MakeGraph() override { return factory_.CreateGraph(); }

  std::string Name(Medium medium) override {
    switch (medium) {
      case Medium::kFilm:
      case Medium::kVfrFilm:
        return "film";
      case Medium::kSlowFilm:
        return "slow";
      case Medium::kTone:
        return "tone";
      case Medium::kDual:
        return "dual";
      case Medium::kMissing:
        return "missing";
      default:
        return "bad";
    }
  }

  std::string Subtitles() override { return "words.srt"; }
  void Pass(int milliseconds) override { pump_.WaitAndPump(milliseconds); }
  double Now() override { return static_cast<double>(time_.Milliseconds()) / 1000.0; }
  void InsidePump(std::function<void()> action) override { pump_.Post(std::move(action)); }

 private:
  VirtualTime time_;
  FakePump pump_{&time_};
  FakeGraphFactory factory_{time_, pump_};
};

}  // namespace

std::unique_ptr<GraphBench> MakeBench() {
  return std::make_unique<FakeBench>();
}

}  // namespace kv
