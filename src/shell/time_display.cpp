#include "shell/time_display.h"

#include "system/ascii_text.h"
#include "system/name_tests.h"
#include "system/text_format.h"

#include <utility>

namespace kv {
namespace {

constexpr int kDecimals = 2;

// Pixels from the left.
constexpr int kPositionX = 1;
constexpr int kSlashX = 65;
constexpr int kDurationX = 75;
constexpr int kBytesX = 140;

}  // namespace

bool PlaysWithoutPosition(const Session& session) {
  const std::string& stream = session.AsxInfo.entry;
  return !stream.empty() && !StartsWithIgnoringCase(stream, "mms://");
}

TimeDisplay::TimeDisplay(const clsDShowControl& movie, const Settings& settings,
                         const TextPlatform& text, PicTime& view, FileSize file_size)
    : movie_(movie),
      settings_(settings),
      text_(text),
      view_(view),
      file_size_(std::move(file_size)) {}

const TimeDisplay::Medium& TimeDisplay::CurrentMedium() {
  const std::string& file = settings_.CurrentFile;
  if (!medium_ || medium_->file != file) {
    const bool shows_bytes = !IsUrl(file) && !IsAsfFile(file);
    medium_ = Medium{file, shows_bytes, shows_bytes ? file_size_(file) : 0.0};
    shown_.reset();
  }
  return *medium_;
}

void TimeDisplay::MediumChanged() {
  medium_.reset();
  shown_.reset();
}

void TimeDisplay::ShowPosition(double position) {
  const double duration = movie_.DS_GetDuration();
  const bool shows_bytes = CurrentMedium().shows_bytes;
  if (shown_ && shown_->position == position && shown_->duration == duration) return;
  PrintTime(FormatTimeCode(position, true, kDecimals), FormatTimeCode(duration, true, kDecimals),
            shows_bytes ? GetCurBytes(position) : std::string());
  shown_ = Times{position, duration};
}

std::string TimeDisplay::GetCurBytes(double Seconds) {
  return FormatByteSize(CurrentMedium().size / movie_.DS_GetDuration() * Seconds,
                        text_.DecimalSeparator());
}

void TimeDisplay::PrintTime(const std::string& Position, const std::string& Duration,
                            const std::string& Bytes) {
  shown_.reset();
  std::string bytes = CurrentMedium().shows_bytes ? " [" + Bytes + "]" : std::string();
  if (Position == position_text_ && Duration == duration_text_ && bytes == bytes_text_) return;
  position_text_ = Position;
  duration_text_ = Duration;
  bytes_text_ = std::move(bytes);
  view_.Cls();
  view_.Print(kPositionX, position_text_);
  view_.Print(kSlashX, "/");
  view_.Print(kDurationX, duration_text_);
  if (!bytes_text_.empty()) view_.Print(kBytesX, bytes_text_);
}

void TimeDisplay::PrintTitle(const std::string& title) {
  shown_.reset();
  if (title == position_text_ && duration_text_.empty()) return;
  position_text_ = title;
  duration_text_.clear();
  bytes_text_.clear();
  view_.Cls();
  view_.Print(kPositionX, position_text_);
}

}  // namespace kv
