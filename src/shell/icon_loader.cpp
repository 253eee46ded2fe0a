#include "shell/icon_loader.h"

#include <algorithm>

namespace kv {
namespace {

constexpr int kFirstMilliseconds = 5000;
constexpr int kNextMilliseconds = 100;

}  // namespace

IconLoader::IconLoader(TimerSource& time)
    : timer_(time.MakeTimer(TimerKind::kOrdinary, kFirstMilliseconds, [this] { Tick(); })) {}

void IconLoader::LoadIcons(std::string_view patterns) {
  while (!patterns.empty()) {
    const std::size_t end = std::min(patterns.find(';'), patterns.size());
    std::string extension(patterns.substr(0, end));
    std::erase(extension, '*');
    if (!extension.empty()) waiting_.push_back(std::move(extension));
    patterns.remove_prefix(std::min(end + 1, patterns.size()));
  }
  timer_->Restart(kFirstMilliseconds);
}

void IconLoader::Tick() {
  if (waiting_.empty()) {
    Stop();
    return;
  }
  const std::string extension = std::move(waiting_.front());
  waiting_.pop_front();
  pictures_.AddPic(StdPictureClass::GetIconOfExtension(extension), extension);
  timer_->SetInterval(kNextMilliseconds);
}

}  // namespace kv
