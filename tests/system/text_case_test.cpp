#include "system/text_case.h"

#include "support/fake_text_platform.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(ProperCase, RaisesTheFirstCharacterOfEachWord) {
  const struct {
    const char* text;
    const char* proper;
  } rows[] = {{"  a\tb\nc  ", "  A\tB\nC  "},
              {"don't (LIVE) 2PAC x-ray", "Don't (live) 2pac X-ray"},
              {"\u00E4RGER \u00D6L \u00FCber", "\u00C4rger \u00D6l \u00DCber"},
              {"\u00DFo \U0001F600b", "\u00DFo \U0001F600b"},  // no single upper case
              {"\xE4X", "\xE4x"}};
  const FakeTextPlatform platform;
  for (const auto& row : rows) EXPECT_EQ(ProperCase(row.text, platform), row.proper) << row.text;
}

}  // namespace
}  // namespace kv
