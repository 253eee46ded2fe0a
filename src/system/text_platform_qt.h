// Case folding and number format from the toolkit, and the way of texts into it and back.
//
// Any thread.
#pragma once

#include "system/text_platform.h"

#include <QString>

namespace kv {

class TextPlatformQt : public TextPlatform {
 public:
  std::string Lower(std::string_view text) const override;
  std::string Upper(std::string_view text) const override;
  std::string DecimalSeparator() const override;
};

// A text for showing; bytes that are not UTF-8 become U+FFFD.
QString ToQString(std::string_view text);

// The UTF-8 of a text that the user typed or picked.
std::string FromQString(const QString& text);

}  // namespace kv
