// What desktops and browsers hand over when something is dropped.
#include "playlist/dropped_media.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kv {
namespace {

using Texts = std::vector<std::string>;

TEST(DroppedMediaTest, ReadsListsOfAddresses) {
  struct Case {
    const char* list;
    Texts files;
    Texts addresses;
  };
  const Case cases[] = {
      {"file:///m/a%20b.mp3\r\nfile:///m/c.mp3\r\n", {"/m/a b.mp3", "/m/c.mp3"}, {}},
      {"file://otherhost/m/a.mp3\nFILE:/m/b.mp3", {"/m/a.mp3", "/m/b.mp3"}, {}},
      {"file:///m/%FF%fe.mp3", {"/m/\xFF\xFE.mp3"}, {}},                 // no UTF-8
      {"file:///100%.mp3\nfile:///%zz%4", {"/100%.mp3", "/%zz%4"}, {}},  // no escapes
      {"# a note\n\nhttp://h/a%20b.mp3\n", {}, {"http://h/a%20b.mp3"}},
      {"file://\nfile:relative\nfile:///a%00b\n", {}, {}},  // no paths
      {"", {}, {}},
  };
  for (const Case& c : cases) {
    const DroppedMedia media = ReadUriList(c.list);
    EXPECT_EQ(media.files, c.files) << c.list;
    EXPECT_EQ(media.addresses, c.addresses) << c.list;
  }
  using namespace std::string_view_literals;
  EXPECT_EQ(ReadUriList("file:///a\0"sv).files, Texts{"/a"});
}

TEST(DroppedMediaTest, TakesEachLineOfPlainText) {
  EXPECT_EQ(ReadDroppedText(" http://h/a \r\n\n/m/b c.mp3").addresses,
            (Texts{"http://h/a", "/m/b c.mp3"}));
  EXPECT_TRUE(ReadDroppedText(" \n").Empty());
}

}  // namespace
}  // namespace kv
