#include "system/registry.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

TEST(Registry, ValuesComeBack) {
  const TempFolder folder;
  const std::string file = folder.Path("registry.ini");
  Registry registry(file);
  EXPECT_EQ(registry.RegReadValue(kUser, "Software\\Kestrelview\\Process", "Priority"), "");
  ASSERT_EQ(registry.RegWriteValue(kUser, "Software\\Kestrelview\\Process", "Priority",
                                   kRegistryText, "High"),
            kRegistrySuccess);
  Registry later(file);
  EXPECT_EQ(later.RegReadValue(kUser, "\\software\\\\KESTRELVIEW\\process\\", "PRIORITY"), "High");

  struct Case {
    std::string data;
    std::string read;
  };
  const Case cases[] = {
      {"", ""},
      {"a=b;[c]\n%41\xFF", "a=b;[c]\n%41\xFF"},
      {"  x  ", "x  "},  // the closing NUL keeps the blanks at the end
      {std::string("cut\0here", 8), "cut"},
      {std::string(2047, 'v'), std::string(2047, 'v')},
      {std::string(2048, 'v'), ""},  // no room for the NUL
  };
  for (const Case& c : cases) {
    for (const char* name : {"", "@", "odd = [name];"}) {
      ASSERT_EQ(registry.RegWriteValue(kUser, "K]", name, kRegistryText, c.data), kRegistrySuccess);
      EXPECT_EQ(registry.RegReadValue(kUser, "K]", name), c.read) << c.data;
    }
  }
  Registry folder_instead(folder.MakeFolder("folder.ini"));
  EXPECT_EQ(folder_instead.RegWriteValue(kUser, "K", "n", kRegistryText, "v"), kRegistryDenied);
}

}  // namespace
}  // namespace kv
