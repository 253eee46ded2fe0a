#include "playlist/details_loader.h"

#include "system/translation.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr int kTickMilliseconds = 5;
constexpr int kRowsAhead = 8;
constexpr const char* kLoading = TrLater("Loading details...");

}  // namespace

DetailsLoader::DetailsLoader(const OSTList& list, ListRows& rows, PlaylistForm& form,
                             Settings& settings, TimerSource& timers, MessagePump& pump,
                             DetailsReadAhead& files)
    : list_(list),
      rows_(rows),
      form_(form),
      settings_(settings),
      pump_(pump),
      files_(files),
      timer_(timers.MakeTimer(TimerKind::kHighResolution, kTickMilliseconds, [this] { Tick(); })) {
  rows_.SetDetails(this);
}

DetailsLoader::~DetailsLoader() {
  rows_.SetDetails(nullptr);
}

void DetailsLoader::AddSubItem(int row) {
  if (!IsOn(settings_.PlaylistShowDetails) || form_.Closing) return;
  if (!Running()) {
    quiet_ = true;
    form_.DetailsCursor = row - 1;
    timer_->SetEnabled(true);
  } else if (row <= form_.DetailsCursor) {
    form_.DetailsCursor = row - 1;
  }
}

void DetailsLoader::Restart() {
  if (!IsOn(settings_.PlaylistShowDetails) || form_.Closing) return;
  quiet_ = false;
  form_.DetailsCursor = 0;
  timer_->SetEnabled(true);
}

void DetailsLoader::Stop() {
  timer_->SetEnabled(false);
  form_.DetailsCursor = 0;
  quiet_ = false;
  files_.Abandon();
}

void DetailsLoader::ShowDetails(bool pressed) {
  // First, so that nothing begins anew in the pump below.
  settings_.PlaylistShowDetails = FromBool(pressed);
  if (pressed) {
    Restart();
    return;
  }
  Stop();
  pump_.PumpOnce();
  if (form_.Closing || IsOn(settings_.PlaylistShowDetails)) return;
  form_.DetailsCursor = 0;
  rows_.RemoveDetails();
  rows_.UpdateNumberOfitemsStatus();
}

void DetailsLoader::Tick() {
  if (form_.Closing) {
    Stop();
    return;
  }
  if (form_.DetailsCursor == 0 && !quiet_ && rows_.RowCount() > 0 &&
      rows_.Status() != Tr(kLoading)) {
    rows_.SetStatus(Tr(kLoading));
    pump_.PumpOnce();
    if (form_.Closing || !Running()) return;
  }
  if (form_.DetailsCursor < rows_.RowCount() && IsOn(settings_.PlaylistShowDetails)) {
    FillNext();
  } else {
    Finish();
  }
}

void DetailsLoader::FillNext() {
  const int row = form_.DetailsCursor + 1;
  if (row > list_.Count()) {  // a row too many for the moment
    form_.DetailsCursor = row;
    return;
  }
  const std::string& path = list_.Item(row);
  if (const std::optional<MediaDetails> details = files_.Take(path)) {
    form_.DetailsCursor = row;
    rows_.SetDetailsOf(row, *details);
  }
  std::vector<std::string> ahead;
  const int last = std::min({form_.DetailsCursor + kRowsAhead, rows_.RowCount(), list_.Count()});
  for (int next = form_.DetailsCursor + 1; next <= last; ++next) ahead.push_back(list_.Item(next));
  files_.Want(std::move(ahead));
}

void DetailsLoader::Finish() {
  const bool announced = !quiet_;
  Stop();
  if (announced) rows_.UpdateNumberOfitemsStatus();
}

}  // namespace kv
