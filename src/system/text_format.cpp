#include "system/text_format.h"

#include "system/message_pump.h"
#include "system/translation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kv {
namespace {

// A billion hours. Up to here a double still tells hundredths of a second apart, and every part of
// a time code fits an integer.
constexpr double kLongestSeconds = 3.6e12;

// Above this no double has a fraction, and scaling it to round would lose digits.
constexpr double kWholeFrom = 4503599627370496.0;  // 2^52

// A finite `value` with at least `min_whole` digits before and exactly `decimals` behind the
// separator.
std::string FormatFixed(double value, int min_whole, int decimals, std::string_view separator) {
  const double scale = std::pow(10.0, decimals);
  const double scaled = std::abs(value) * scale;
  // std::round takes halves away from zero, where plain formatting looks at the binary fraction.
  const double rounded = scaled < kWholeFrom ? std::round(scaled) / scale : std::abs(value);
  std::array<char, std::numeric_limits<double>::max_exponent10 + 16> text{};
  const auto end =
      std::to_chars(text.begin(), text.end(), rounded, std::chars_format::fixed, decimals).ptr;
  const std::string_view digits(text.data(), static_cast<std::size_t>(end - text.data()));
  const std::string_view whole = digits.substr(0, digits.find('.'));

  std::string result(value < 0 && rounded > 0 ? "-" : "");
  const auto least = static_cast<std::size_t>(min_whole);
  if (whole.size() < least) result.append(least - whole.size(), '0');
  result.append(whole);
  if (decimals > 0) result.append(separator).append(digits.substr(whole.size() + 1));
  return result;
}

std::string TwoDigits(double whole) {
  return FormatFixed(whole, 2, 0, "");
}

}  // namespace

std::string FormatByteSize(double bytes, std::string_view decimal_separator) {
  constexpr double kStep = 1024;
  constexpr std::array<std::string_view, 4> kUnits = {TrLater("%1 Bytes"), TrLater("%1 KB"),
                                                      TrLater("%1 MB"), TrLater("%1 GB")};
  if (!std::isfinite(bytes)) bytes = 0;  // a rate over no time at all
  std::size_t unit = 0;
  while (bytes > kStep && unit + 1 < kUnits.size()) {
    bytes /= kStep;
    ++unit;
  }
  return Fill(Tr(kUnits[unit]), FormatFixed(bytes, 1, 2, decimal_separator));
}

double TruncateSeconds(double x) {
  // What stepping up by 0.1 from the nearest whole number ends at, for every x, without the
  // stepping, which would not end where a double is too coarse to take a tenth.
  return std::ceil(x);
}

std::string FormatTimeCode(double seconds, bool show_decimals, int decimals) {
  decimals = std::clamp(decimals, 1, 6);
  if (!(seconds >= 0.01)) {
    return show_decimals ? "00:00:00," + std::string(static_cast<std::size_t>(decimals), '0')
                         : "00:00:00";
  }
  seconds = std::min(seconds, kLongestSeconds);
  const double hours = TruncateSeconds(seconds / 60 / 60 - 1);
  const double minutes = TruncateSeconds(seconds / 60 - 1) - hours * 60;
  const double before = minutes * 60 + hours * 60 * 60;
  const std::string rest = show_decimals ? FormatFixed(seconds - before, 2, decimals, ".")
                                         : TwoDigits(TruncateSeconds(seconds - 1) - before);
  return TwoDigits(hours) + ":" + TwoDigits(minutes) + ":" + rest;
}

std::string DecodeUrlText(std::string_view text, MessagePump* pump) {
  // A pump costs more than all the decoding of a title, and anything may happen inside it: once for
  // a short text and now and then for a long one keeps the window alive just as well.
  constexpr std::size_t kCharactersPerPump = 256;
  std::string result;
  result.reserve(text.size());
  std::size_t steps = 0;
  for (std::size_t at = 0; at < text.size(); ++steps) {
    if (pump != nullptr && steps % kCharactersPerPump == 0) pump->PumpOnce();
    if (text[at] == '+') {
      result += ' ';
      ++at;
    } else if (text[at] == '%') {
      const std::string_view digits = text.substr(at + 1, 2);
      if (digits.empty()) break;
      unsigned value = 0;
      std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
      result += static_cast<char>(value);
      at += 3;
    } else {
      result += text[at++];
    }
  }
  return result;
}

std::string SwapColorHex(std::string_view hex) {
  if (hex.size() != 6) return "0";
  return std::string(hex.substr(4, 2)).append(hex.substr(2, 2)).append(hex.substr(0, 2));
}

std::string TrimAtNull(std::string_view text) {
  return std::string(text.substr(0, text.find('\0')));
}

}  // namespace kv
