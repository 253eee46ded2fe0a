// Texts of windows in the user's language, as the toolkit takes them.
#pragma once

#include "system/text_platform_qt.h"
#include "system/translation.h"

#include <QString>

#include <string_view>

namespace kv {

// The text in the user's language, see Tr().
inline QString QTr(std::string_view english) {
  return ToQString(Tr(english));
}

}  // namespace kv
