#include "system/text_format.h"

#include <gtest/gtest.h>
#include <limits>

namespace kv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(TextFormat, ByteSizes) {
  struct Case {
    double bytes;
    const char* text;
  };
  const Case cases[] = {
      {0, "0.00 Bytes"},
      {1024, "1024.00 Bytes"},
      {1025, "1.00 KB"},
      {1024.0 * 1.125, "1.13 KB"},  // an exact half goes up
      {1024.0 * 1024 + 1, "1.00 MB"},
      {5000.0 * 1024 * 1024 * 1024, "5000.00 GB"},
      {-0.001, "0.00 Bytes"},
      {kInfinity, "0.00 Bytes"},
  };
  for (const Case& c : cases) EXPECT_EQ(FormatByteSize(c.bytes, "."), c.text) << c.bytes;
  EXPECT_EQ(FormatByteSize(1536, ","), "1,50 KB");
}

TEST(TextFormat, TimeCodes) {
  struct Case {
    double seconds;
    const char* whole;
    const char* with_decimals;  // two
  };
  const Case cases[] = {
      {-5, "00:00:00", "00:00:00,00"},
      {kNan, "00:00:00", "00:00:00,00"},
      {0.01, "00:00:00", "00:00:00.01"},
      {0.125, "00:00:00", "00:00:00.13"},
      {60, "00:00:59", "00:00:60.00"},
      {3600, "00:59:59", "00:59:60.00"},
      {3723.25, "01:02:03", "01:02:03.25"},
      {360001, "100:00:00", "100:00:01.00"},
      {kInfinity, "999999999:59:59", "999999999:59:60.00"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FormatTimeCode(c.seconds, false, 2), c.whole) << c.seconds;
    EXPECT_EQ(FormatTimeCode(c.seconds, true, 2), c.with_decimals) << c.seconds;
  }
  EXPECT_EQ(FormatTimeCode(1.5, true, 99), "00:00:01.500000");
}

TEST(TextFormat, DecodeUrlText) {
  struct Case {
    std::string text;
    std::string decoded;
  };
  const Case cases[] = {{"a+b%20c", "a b c"},
                        {"%C3%A9t%c3%a9", "\xC3\xA9t\xC3\xA9"},
                        {"100%", "100"},
                        {"100%4", "100\x04"},
                        {"%2B%25", "+%"},
                        {"%4Gx", "\x04x"},
                        {"50%zz!", std::string("50\0!", 4)},
                        {"", ""}};
  for (const Case& c : cases) EXPECT_EQ(DecodeUrlText(c.text), c.decoded) << c.text;
}

}  // namespace
}  // namespace kv
