#include "shell/marks.h"

#include "system/text_format.h"
#include "system/translation.h"

#include <utility>

namespace kv {
namespace {

enum Face { kNoMark, kASet, kBothSet };

std::string TimeText(double seconds) {
  return FormatTimeCode(seconds, true, 2);
}

}  // namespace

Marks::Marks(const clsDShowControl& movie, Session& session, ScrollerModel& Scroller1,
             MarksView& view)
    : movie_(movie), session_(session), position_(Scroller1), view_(view) {}

void Marks::Press() {
  double& a = session_.MarkA;
  double& b = session_.MarkB;
  if (a == kNoPosition && b == kNoPosition) {
    a = movie_.DS_GetPosition();
    view_.SetAbFace(kASet);
    view_.SetAbToolTip(TimeText(a) + " > ...");
  } else if (a > kNoPosition && b == kNoPosition) {
    b = movie_.DS_GetPosition();
    if (b < a) std::swap(a, b);
    position_.SetRangeStart(a);
    position_.SetRangeEnd(b);
    view_.SetAbFace(kBothSet);
    view_.SetAbToolTip(TimeText(a) + " > " + TimeText(b));
  } else {
    ResetAB();
    view_.SetAbToolTip(Tr("Click to set A > B"));
  }
}

bool Marks::BothSet() const {
  return session_.MarkA > kNoPosition && session_.MarkB > kNoPosition;
}

void Marks::ResetAB() {
  session_.MarkA = kNoPosition;
  session_.MarkB = kNoPosition;
  position_.SetRangeEnd(kNoPosition);
  position_.SetRangeStart(kNoPosition);
  view_.SetAbFace(kNoMark);
}

}  // namespace kv
