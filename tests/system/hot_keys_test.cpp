// Which identifiers hot keys get, and how their presses are told.
#include "system/hot_keys.h"

#include "support/virtual_time.h"
#include "system/key_symbols.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kv {
namespace {

class Keys : public HotKeyPlatform {
 public:
  bool RegisterHotKey(int id, unsigned /*Modifiers*/, int VirtualKey) override {
    return VirtualKey != owned_by_others && ids.insert(id).second;
  }
  void UnregisterHotKey(int id) override { ids.erase(id); }
  int owned_by_others = 'X';
  std::set<int> ids;
};

class HotKeysTest : public testing::Test {
 protected:
  HotKeysTest() {
    control.KeyPressed = [this](std::uint8_t& id) { pressed.push_back(id); };
  }
  VirtualTime time;
  Keys keys;
  OSTHotKeyModule module{keys};
  OSTHotkey control{module, time};
  std::vector<int> pressed;
};

TEST_F(HotKeysTest, IdentifiersCountRefusedKeysOut) {
  control.RemoveHotKeys();  // nothing to remove changes nothing
  EXPECT_TRUE(control.AsignNewHotKey('A', kModControl));
  EXPECT_FALSE(control.AsignNewHotKey('X', kModControl));
  {
    OSTHotkey another(module, time);
    EXPECT_TRUE(another.AsignNewHotKey('B', kModAlt));
    EXPECT_EQ(keys.ids, (std::set<int>{1, 2}));
  }
  EXPECT_TRUE(keys.ids.empty());  // all keys go with any control
  EXPECT_FALSE(control.AsignNewHotKey('X', 0));
  EXPECT_TRUE(control.AsignNewHotKey('A', 0));
  EXPECT_EQ(keys.ids, (std::set<int>{0}));
  control.RemoveHotKeys();
  EXPECT_TRUE(keys.ids.empty());
}

TEST_F(HotKeysTest, PressesMergeUntilTheNextTick) {
  ASSERT_TRUE(control.AsignNewHotKey('A', kModControl));
  keys.on_hot_key(1);
  EXPECT_TRUE(pressed.empty());
  time.Advance(50);
  keys.on_hot_key(1);
  keys.on_hot_key(0x102);
  time.Advance(200);
  EXPECT_EQ(pressed, (std::vector<int>{1, 2}));
}

TEST(KeySymbols, NumbersOutsideTheTableHaveNone) {
  EXPECT_EQ(KeySymbolOf(0x70).keysym, 0xFFBEU);
  for (const int key : {-1, 7, 100'000}) EXPECT_EQ(KeySymbolOf(key).keysym, 0U) << key;
}

}  // namespace
}  // namespace kv
