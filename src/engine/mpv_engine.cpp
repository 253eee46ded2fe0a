#include "engine/mpv_engine.h"

#include "engine/audio_levels.h"
#include "engine/media_gate.h"
#include "engine/mpv_graph.h"
#include "engine/mpv_library.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <thread>

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
    Observed{MpvGraph::kPictureFormat, MPV_FORMAT_NODE},
    Observed{"container-fps", MPV_FORMAT_DOUBLE},
    Observed{"video-bitrate", MPV_FORMAT_DOUBLE},
    Observed{"metadata", MPV_FORMAT_NODE},
    Observed{MpvTracks::kProperty, MPV_FORMAT_NODE},
};

// How long what was released stays loaded, in case another medium follows at once.
constexpr int kUnloadMilliseconds = 250;
constexpr int kProbePollMilliseconds = 5;
// How long subtitles of the medium before may hold up the next one, on a disk that hangs.
constexpr auto kAddPatience = std::chrono::milliseconds(250);

// `stereotools` multiplies the left channel by 1 - b for a balance b above 0, the right by 1 + b
// for one below.
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
  const bool hardware = path == VideoPath::kHardware;
  first_handle_ =
      std::async(std::launch::async, [hardware] { return MpvCore::CreateHandle(hardware); });
  unload_.setSingleShot(true);
  QObject::connect(&unload_, &QTimer::timeout, [this] { core_->Command({"stop"}); });
}

MpvEngine::~MpvEngine() {
  Shutdown(0);
}

bool MpvEngine::HandleReady() const {
  return first_handle_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

void MpvEngine::MakeCore(mpv_handle* handle) {
  core_ = std::make_unique<MpvCore>(handle);
  sound_.SetCore(core_.get());
  balance_filter_ = false;
  if (!core_->Valid()) return;
  std::uint64_t id = 0;
  for (const Observed& property : kObserved) {
    Mpv().observe_property(core_->Handle(), ++id, property.name, property.format);
  }
  // Called before the core opens any medium, which is where one that we did not ask for is stopped.
  Mpv().hook_add(core_->Handle(), 0, "on_load", 0);
  core_->SetRenderer(video_->Attach(core_->Handle()));
}

void MpvEngine::ReplaceCore() {
  sound_.SetCore(nullptr);
  std::unique_ptr<MpvCore> stuck;
  stuck.swap(core_);
  MpvCore::Retire(std::move(stuck));
  MakeCore(MpvCore::CreateHandle(video_->Path() == VideoPath::kHardware));
  sound_.Suspect();
  core_->SetListener(current_);
}

bool MpvEngine::Shutdown(int milliseconds) {
  unload_.stop();
  expected_.reset();
  if (first_handle_.valid()) MakeCore(first_handle_.get());
  if (!core_) return true;
  core_->Command({"stop"});
  sound_.SetCore(nullptr);
  const auto ended = MpvCore::Retire(std::move(core_));
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (!*ended && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return *ended;
}

std::shared_ptr<FilterGraph> MpvEngine::CreateGraph() {
  return std::make_shared<MpvGraph>(*this);
}

void MpvEngine::Claim(MpvGraph& graph) {
  current_ = &graph;
  while (first_handle_.valid() && !HandleReady()) {
    pump_.WaitAndPump(kProbePollMilliseconds);
    if (current_ != &graph) return;
  }
  if (first_handle_.valid()) MakeCore(first_handle_.get());
  core_->SetListener(&graph);
  while (!sound_.Asked() && current_ == &graph) {
    pump_.WaitAndPump(kProbePollMilliseconds);
  }
  const auto begin = std::chrono::steady_clock::now();
  while (core_->Adding() && current_ == &graph &&
         std::chrono::steady_clock::now() - begin < kAddPatience) {
    pump_.WaitAndPump(kProbePollMilliseconds);
  }
  if (current_ != &graph) return;
  unload_.stop();
  sound_.ApplyAndLookAhead();
}

void MpvEngine::Expect(const std::string& target) {
  if (core_ || current_ != nullptr) return;
  expected_target_ = target;
  // Looks again until the core has been made; an open that comes first makes this idle.
  auto* again = new QTimer(video_.get());
  QObject::connect(again, &QTimer::timeout, again, [this, again] {
    if (current_ == nullptr && !expected_target_.empty() && !core_) {
      if (!HandleReady() || !sound_.Asked()) return;
      BeginExpected();
    }
    again->deleteLater();
  });
  again->start(kProbePollMilliseconds);
}

void MpvEngine::BeginExpected() {
  MakeCore(first_handle_.get());
  const GateVerdict verdict = CheckMedium(expected_target_);
  if (!verdict.allowed || verdict.remote || !core_->Valid()) return;
  sound_.Apply();
  expected_ = std::make_unique<MpvGraph>(*this);
  core_->SetListener(expected_.get());
  expected_->StartLoading(verdict.target, false);
}

std::optional<MpvGraphState> MpvEngine::TakeExpected(const std::string& target) {
  std::optional<MpvGraphState> state;
  if (expected_ && target == expected_target_) state = expected_->State();
  expected_.reset();
  expected_target_.clear();
  return state;
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
