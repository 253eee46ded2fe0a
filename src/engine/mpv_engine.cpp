#include "engine/mpv_engine.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <thread>

#include "engine/audio_levels.h"
#include "engine/mpv_graph.h"

namespace kv {
namespace {

struct Observed {
  const char* name;
  mpv_format format;
};

constexpr std::array kObserved = {
    Observed{"time-pos", MPV_FORMAT_DOUBLE},
    Observed{"duration", MPV_FORMAT_DOUBLE},
    Observed{"eof-reached", MPV_FORMAT_FLAG},
    Observed{"paused-for-cache", MPV_FORMAT_FLAG},
    Observed{"video-out-params/dw", MPV_FORMAT_INT64},
    Observed{"video-out-params/dh", MPV_FORMAT_INT64},
    Observed{"video-out-params/rotate", MPV_FORMAT_INT64},
    Observed{"container-fps", MPV_FORMAT_DOUBLE},
    Observed{"video-bitrate", MPV_FORMAT_DOUBLE},
};

// How long what was released stays loaded, in case another medium follows at once.
constexpr int kUnloadMilliseconds = 250;
constexpr int kProbePollMilliseconds = 5;

// `stereotools` multiplies the left channel by 1 - b for a balance b above 0, the right by 1 + b for
// one below.
double FilterBalance(int balance) {
  const ChannelGains gains = GainsOfBalance(balance);
  return balance > 0 ? 1.0 - gains.left : gains.right - 1.0;
}

// In the C locale whatever the user's is: libmpv reads its numbers so.
std::string Number(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.6f", value);
  return text.data();
}

}  // namespace

MpvEngine::MpvEngine(MessagePump& pump, VideoPath path)
    : pump_(pump), video_(std::make_unique<VideoOutput>(path)) {
  MakeCore();
  unload_.setSingleShot(true);
  QObject::connect(&unload_, &QTimer::timeout, [this] { core_->Command({"stop"}); });
}

MpvEngine::~MpvEngine() { Shutdown(0); }

void MpvEngine::MakeCore() {
  core_ = std::make_unique<MpvCore>(outputs_, video_->Path() == VideoPath::kHardware);
  balance_filter_ = false;
  if (!core_->Valid()) return;
  std::uint64_t id = 0;
  for (const Observed& property : kObserved) {
    mpv_observe_property(core_->Handle(), ++id, property.name, property.format);
  }
  // Called before the core opens any medium, which is where one that we did not ask for is stopped.
  mpv_hook_add(core_->Handle(), 0, "on_load", 0);
  core_->SetRenderer(video_->Attach(core_->Handle()));
}

void MpvEngine::ReplaceCore() {
  MpvCore::Retire(std::move(core_));
  MakeCore();
  core_->SetListener(current_);
}

bool MpvEngine::Shutdown(int milliseconds) {
  unload_.stop();
  if (!core_) return true;
  core_->Command({"stop"});
  const auto ended = MpvCore::Retire(std::move(core_));
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (!*ended && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return *ended;
}

std::shared_ptr<FilterGraph> MpvEngine::CreateGraph() { return std::make_shared<MpvGraph>(*this); }

void MpvEngine::Claim(MpvGraph& graph) {
  current_ = &graph;
  core_->SetListener(&graph);
  while (probe_.Result() == SoundServer::kUnknown && current_ == &graph) {
    pump_.WaitAndPump(kProbePollMilliseconds);
  }
  if (current_ != &graph) return;
  unload_.stop();
  const std::string outputs = SoundOutputs(probe_.Result());
  if (outputs != outputs_) {
    outputs_ = outputs;
    core_->SetText("ao", outputs_);
  }
  // A server that did not answer now may answer when the next medium is opened.
  if (probe_.Result() != SoundServer::kAnswers) probe_ = SoundProbe();
}

void MpvEngine::Release(MpvGraph& graph, bool at_once) {
  if (!IsCurrent(graph)) return;
  current_ = nullptr;
  if (!core_) return;
  core_->SetListener(nullptr);
  core_->SetFlag("pause", true);
  video_->SetShown(false);
  if (at_once) {
    core_->Command({"stop"});
  } else {
    unload_.start(kUnloadMilliseconds);
  }
}

void MpvEngine::SetBalance(int balance) {
  const std::string value = Number(FilterBalance(balance));
  if (balance_filter_) {
    core_->Command({"af-command", "balance", "balance_out", value.c_str()});
  } else if (balance != 0) {
    const std::string filter = "@balance:lavfi=[stereotools=balance_out=" + value + "]";
    core_->Command({"af", "add", filter.c_str()});
    balance_filter_ = true;
  }
}

void MpvEngine::ResetBalance() {
  if (!balance_filter_) return;
  core_->SetText("af", "");
  balance_filter_ = false;
}

}  // namespace kv
