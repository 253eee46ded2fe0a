// Options stand alone; everything else stays a name.
#include "desktop/start_option.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(StartOptions, StandAlone) {
  EXPECT_STREQ(StartOptionOf({"--next"})->method, "Next");
  for (const std::vector<std::string>& name : {std::vector<std::string>{},
                                               {"./--next"},
                                               {"--next", "a.mp3"},
                                               {"-debug", "--next"},
                                               {"--nextt"},
                                               {"/m/a --next"}}) {
    EXPECT_EQ(StartOptionOf(name), nullptr);
  }
  EXPECT_NE(UsageText().find("--next "), std::string::npos);
}

}  // namespace
}  // namespace kv
