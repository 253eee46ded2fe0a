// Case folding by the C library, a decimal separator that the test sets.
#pragma once

#include "system/text_platform.h"
#include "system/utf8.h"

#include <clocale>
#include <cwctype>
#include <string>
#include <string_view>

namespace kv {

class FakeTextPlatform : public TextPlatform {
 public:
  FakeTextPlatform() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {}
  FakeTextPlatform(const FakeTextPlatform&) = delete;
  FakeTextPlatform& operator=(const FakeTextPlatform&) = delete;
  ~FakeTextPlatform() override {
    if (locale_ != nullptr) freelocale(locale_);
  }

  std::string Lower(std::string_view text) const override { return Mapped(text, towlower_l); }
  std::string Upper(std::string_view text) const override { return Mapped(text, towupper_l); }

  std::string DecimalSeparator() const override { return decimal_separator; }

  std::string decimal_separator = ".";

 private:
  std::string Mapped(std::string_view text, wint_t (*map)(wint_t, locale_t)) const {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
      const Utf8Char next = DecodeUtf8(text, at);
      if (next.valid && locale_ != nullptr) {
        AppendUtf8(result, static_cast<char32_t>(map(next.code, locale_)));
      } else {
        result.append(text.substr(at, next.size));
      }
      at += next.size;
    }
    return result;
  }

  locale_t locale_;
};

}  // namespace kv
