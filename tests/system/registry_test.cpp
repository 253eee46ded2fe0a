#include "system/registry.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;
constexpr RegistryRoot kClasses = RegistryRoot::kClassesRoot;

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
  EXPECT_EQ(
      later.RegReadValue(RegistryRoot::kLocalMachine, "software\\kestrelview\\process", "priority"),
      "");

  struct Case {
    int type;
    std::string data;
    std::string read;
  };
  const Case cases[] = {
      {kRegistryText, "", ""},
      {kRegistryText, "\"/opt/kestrelview\" \"%1\" /dde", "\"/opt/kestrelview\" \"%1\" /dde"},
      {kRegistryText, "a=b;[c]\n%41\xFF", "a=b;[c]\n%41\xFF"},
      {kRegistryText, "  x  ", "x  "},  // the closing NUL keeps the blanks at the end
      {2, "  x  ", "x"},
      {2, "   ", ""},
      {kRegistryText, std::string("cut\0here", 8), "cut"},
      {kRegistryText, std::string(2047, 'v'), std::string(2047, 'v')},
      {kRegistryText, std::string(2048, 'v'), ""},  // no room for the NUL
      {kRegistryInteger, "7", "007"},
      {kRegistryInteger, "4096", "4096"},
      {kRegistryInteger, "-1", "4294967295"},
      {kRegistryBinary, "text", "text"},
  };
  for (const Case& c : cases) {
    for (const char* name : {"", "@", "odd = [name];", " blank "}) {
      ASSERT_EQ(registry.RegWriteValue(kUser, "K]", name, c.type, c.data), kRegistrySuccess);
      EXPECT_EQ(registry.RegReadValue(kUser, "K]", name), c.read) << c.data;
    }
  }
  for (const char* bad : {"", "x", "1x", "4294967296", "-2147483649"}) {
    EXPECT_EQ(registry.RegWriteValue(kUser, "K", "n", kRegistryInteger, bad), kRegistryInvalid);
  }
  EXPECT_EQ(registry.RegReadValue(kUser, "K", "n"), "");
}

TEST(Registry, ReadsWhatWasWrittenByHand) {
  const TempFolder folder;
  const Registry registry(
      folder.Write("registry.ini",
                   "[HKEY_CLASSES_ROOT\\.mp3]\n"
                   "@=Some Player\nbin=hex:00,0f,A1\nbad=hex:0\n"
                   "int=dword:0000000A\nbroken=dword:zz\nlong=dword:123456789\n"));
  EXPECT_EQ(registry.RegReadValue(kClasses, ".MP3", ""), "Some Player");
  EXPECT_EQ(registry.RegReadValue(kClasses, ".mp3", "bin"), "000fA1");
  EXPECT_EQ(registry.RegReadValue(kClasses, ".mp3", "int"), "010");
  for (const char* name : {"bad", "broken", "long"}) {
    EXPECT_EQ(registry.RegReadValue(kClasses, ".mp3", name), "") << name;
  }
}

TEST(Registry, KeysGoFromTheInsideOut) {
  const TempFolder folder;
  Registry registry(folder.Path("registry.ini"));
  registry.RegWriteValue(kClasses, "Kestrelview\\Shell\\Open\\Command\\", "", kRegistryText, "x");
  registry.RegWriteValue(kClasses, "Kestrelview Resume File", "", kRegistryText, "y");
  EXPECT_EQ(registry.RegRemoveKey(kClasses, "Kestrelview"), kRegistryDenied);
  EXPECT_EQ(registry.RegRemoveKey(kClasses, ""), kRegistryDenied);
  EXPECT_EQ(registry.RegRemoveKey(kClasses, "Kestrel"), kRegistryNotFound);
  for (const char* key : {"Kestrelview\\Shell\\open\\command", "Kestrelview\\Shell\\open",
                          "Kestrelview\\Shell", "Kestrelview"}) {
    EXPECT_EQ(registry.RegRemoveKey(kClasses, key), kRegistrySuccess) << key;
    EXPECT_EQ(registry.RegRemoveKey(kClasses, key), kRegistryNotFound) << key;
  }
  EXPECT_EQ(registry.RegReadValue(kClasses, "Kestrelview Resume File", ""), "y");
  EXPECT_EQ(registry.RegRemoveValue(kClasses, "kestrelview resume file", ""), kRegistrySuccess);
  EXPECT_EQ(registry.RegRemoveValue(kClasses, "kestrelview resume file", ""), kRegistryNotFound);
  EXPECT_EQ(registry.RegRemoveKey(kClasses, "kestrelview resume file"), kRegistrySuccess);
}

TEST(Registry, AStoreThatCannotBeUsedIsDenied) {
  const TempFolder folder;
  Registry registry(folder.MakeFolder("registry.ini"));
  EXPECT_EQ(registry.RegWriteValue(kUser, "K", "n", kRegistryText, "v"), kRegistryDenied);
  EXPECT_EQ(registry.RegRemoveKey(kUser, "K"), kRegistryDenied);
  EXPECT_EQ(registry.RegRemoveValue(kUser, "K", "n"), kRegistryDenied);
  EXPECT_EQ(registry.RegReadValue(kUser, "K", "n"), "");
}

}  // namespace
}  // namespace kv
