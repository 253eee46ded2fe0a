// The bench of the real engine: small media made by ffmpeg, in real time.

#include "engine_world_qt.h"
#include "graph_bench.h"

#include <QTimer>

#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

class MpvBench : public GraphBench {
 public:
  MpvBench() { clock_.start(); }

  std::shared_ptr<FilterGraph> MakeGraph() override { return world_.Engine().CreateGraph(); }

  std::string Name(Medium medium) override {
    switch (medium) {
      case Medium::kFilm:
        return EngineWorld::Path("film25.mkv");
      case Medium::kSlowFilm:
        return EngineWorld::Path("film1.mkv");
      case Medium::kVfrFilm:
        return EngineWorld::Path("film_vfr.mkv");
      case Medium::kTone:
        return EngineWorld::Path("tone.wav");
      case Medium::kDual:
        return EngineWorld::Path("dual.mkv");
      case Medium::kMissing:
        return EngineWorld::Path("missing.mkv");
      case Medium::kEmpty:
        return EngineWorld::Path("empty.mp4");
      case Medium::kTruncated:
        return EngineWorld::Path("truncated.mp4");
      case Medium::kText:
        return EngineWorld::Path("text.mp4");
      case Medium::kPlaylist:
        return EngineWorld::Path("playlist.mp4");
      case Medium::kFolder:
        return EngineWorld::Path("");
      case Medium::kFifo: {
        const std::string name = world_.Folder().Path("pipe.mkv");
        mkfifo(name.c_str(), 0600);
        return name;
      }
      case Medium::kForeignScheme:
        return "av://lavfi:testsrc";
    }
    return {};
  }

  std::string Subtitles() override {
    return world_.Folder().Write("words.srt", "1\n00:00:00,000 --> 00:00:03,000\nWords\n");
  }
  void Pass(int milliseconds) override { world_.Pass(milliseconds); }
  double Now() override { return static_cast<double>(clock_.nsecsElapsed()) / 1e9; }
  void InsidePump(std::function<void()> action) override {
    QTimer::singleShot(0, std::move(action));
  }

 private:
  EngineWorld world_;
  QElapsedTimer clock_;
};

}  // namespace

std::unique_ptr<GraphBench> MakeBench() {
  return std::make_unique<MpvBench>();
}

}  // namespace kv
