#include "engine/sound_watch.h"

#include "engine/mpv_core.h"

#include <algorithm>
#include <chrono>

namespace kv {
namespace {

using std::chrono::milliseconds;

constexpr const char* kNoOutput = "null";
constexpr milliseconds kLongestPause{16000};
constexpr milliseconds kAnswerPoll{50};

}  // namespace

SoundWatch::SoundWatch() : outputs_(kNoOutput) {
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
}

void SoundWatch::SetCore(MpvCore* core) {
  core_ = core;
  outputs_ = kNoOutput;
  timer_.stop();
  if (core_ == nullptr) return;
  core_->SetSoundOutputListener([this](const std::string& output) { OutputChanged(output); });
}

void SoundWatch::Suspect() {
  AskAgain();
  answer_ = SoundServer::kMute;
}

SoundServer SoundWatch::Answer() {
  const SoundServer now = probe_.Result();
  if (now != SoundServer::kUnknown) answer_ = now;
  return answer_;
}

void SoundWatch::AskAgain() {
  Answer();
  probe_ = SoundProbe();
  asking_ = true;
}

void SoundWatch::Apply() {
  const std::string outputs = SoundOutputs(Answer());
  if (outputs == outputs_) return;
  outputs_ = outputs;
  core_->SetText("ao", outputs_);
}

void SoundWatch::ApplyAndLookAhead() {
  Apply();
  if (Answer() != SoundServer::kAnswers) AskAgain();
}

void SoundWatch::OutputChanged(const std::string& output) {
  if (output == kNoOutput) {
    timer_.start(asking_ ? kAnswerPoll : kFirstLook);
    return;
  }
  timer_.stop();
  // None at all means that no medium with sound is open, or that an output is being opened.
  if (!output.empty()) pause_ = kFirstLook;
}

void SoundWatch::Look() {
  if (!asking_) AskAgain();
  if (probe_.Result() == SoundServer::kUnknown) {
    timer_.start(kAnswerPoll);
    return;
  }
  asking_ = false;
  timer_.start(pause_);
  pause_ = std::min(pause_ * 2, kLongestPause);
  const bool same = SoundOutputs(Answer()) == outputs_;
  Apply();
  if (same && Answer() == SoundServer::kAnswers) core_->Command({"ao-reload"});
}

}  // namespace kv
