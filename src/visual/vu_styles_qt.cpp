#include "visual/vu_styles_qt.h"

#include <algorithm>
#include <cstddef>

namespace kv {

std::unique_ptr<VuStylePainter> MakeVuStylePainter(VuStyle style) {
  constexpr std::array kMakers = {MakeVuBarsPainter, MakeVuTracePainter, MakeVuNeedlePainter};
  return kMakers.at(static_cast<std::size_t>(style))();
}

QImage BlankPicture(const VuLook& look) {
  QImage picture(look.size, QImage::Format_RGB32);
  picture.fill(look.back);
  return picture;
}

QFont FontOfPixels(QFont font, double pixels) {
  font.setPixelSize(std::max(1, qRound(pixels)));
  return font;
}

}  // namespace kv
