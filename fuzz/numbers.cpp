// Sizes and times of any number that a file can claim: eight bytes each.
#include "support.h"
#include "system/text_format.h"

#include <cmath>
#include <cstring>

namespace kv::fuzz {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// "01:02:03", hours of two digits and more, behind it what `decimals` says.
void RequireTimeCode(const std::string& text, std::size_t decimals) {
  const std::size_t hours = text.find(':');
  Require(hours != std::string::npos && hours >= 2, "two digits of hours or more");
  const std::size_t rest = decimals == 0 ? 0 : decimals + 1;
  Require(text.size() == hours + 6 + rest && text[hours + 3] == ':', "a time code's form");
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool sign = i == hours || i == hours + 3 || i == hours + 6;
    Require(sign != IsDigit(text[i]), "digits and nothing else");
  }
}

void TryNumber(double number) {
  RequireTimeCode(FormatTimeCode(number, false, 1), 0);
  for (const int decimals : {-1, 1, 2, 6, 99}) {
    RequireTimeCode(FormatTimeCode(number, true, decimals),
                    decimals < 1   ? 1
                    : decimals > 6 ? 6
                                   : static_cast<std::size_t>(decimals));
  }
  const std::string size = FormatByteSize(number, ",");
  const std::size_t comma = size.find(',');
  Require(comma != std::string::npos && comma > 0, "a size has decimals");
  Require(size.find(' ') == comma + 3, "two of them");
}

}  // namespace

void Try(std::string_view input) {
  double number = 0;
  for (; input.size() >= sizeof(number); input.remove_prefix(sizeof(number))) {
    std::memcpy(&number, input.data(), sizeof(number));
    TryNumber(number);
    // Most numbers of random bytes are huge or tiny: the same digits as a length and as a size.
    TryNumber(std::remainder(number, 36000.0));
    TryNumber(std::remainder(number, 1e13));
  }
}

}  // namespace kv::fuzz
