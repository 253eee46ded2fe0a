// The display texts for sizes, times and URLs.
//
// Numbers are rounded to the digits shown, halves away from zero. Any thread, except where a
// message pump is given.
#pragma once

#include <string>
#include <string_view>

namespace kv {

class MessagePump;

// "512.00 Bytes", "4.20 MB": two decimals, divided by 1024 up to " GB" while the value is above
// 1024, so that exactly 1024 keeps the smaller unit. `decimal_separator` is the user's own, see
// TextPlatform::DecimalSeparator. What is no finite number counts as 0.
std::string FormatByteSize(double bytes, std::string_view decimal_separator);

// "01:02:03" or, with `show_decimals`, "01:02:03.45" with `decimals` digits (forced into 1 to 6),
// always with a point. Seconds below 0.01, and what is no number, give zeros, with a comma before
// the decimals. Whole texts run one second behind at each full second: 60 reads "00:00:59", 61
// reads "00:01:00"; with decimals 60 reads "00:00:60.00". Times above a billion hours show as that.
std::string FormatTimeCode(double seconds, bool show_decimals, int decimals);

// The smallest whole number not below `x`, in seconds or any other unit.
double TruncateSeconds(double x);

// Undoes URL encoding: "+" is a blank, "%" and two hexadecimal digits are one byte. Digits that are
// none are not refused: what precedes them counts, nothing counts as 0. A "%" at the very end stops
// the decoding. `pump`, if given, is pumped as the text goes by.
std::string DecodeUrlText(std::string_view text, MessagePump* pump = nullptr);

// Six characters RRGGBB become BBGGRR; any other length gives "0".
std::string SwapColorHex(std::string_view hex);

// The text before the first NUL, or the whole.
std::string TrimAtNull(std::string_view text);

}  // namespace kv
