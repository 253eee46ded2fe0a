// What the standard library lacks for texts: Unicode case folding and the system's number format.
#pragma once

#include <string>
#include <string_view>

namespace kv {

class TextPlatform {
 public:
  virtual ~TextPlatform() = default;

  // `text` in simple lower case (Unicode). Bytes that are not UTF-8 come back as they are.
  virtual std::string Lower(std::string_view text) const = 0;

  // The same in simple upper case: each character stays one character.
  virtual std::string Upper(std::string_view text) const = 0;

  // The decimal separator of the user's locale, UTF-8.
  virtual std::string DecimalSeparator() const = 0;
};

}  // namespace kv
