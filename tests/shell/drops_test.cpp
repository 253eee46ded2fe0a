// Drops on the main window, and the addresses that the user types.
#include "shell/drops.h"

#include "shell/shell_test.h"
#include "shell/url_entry.h"
#include "support/list_host.h"

#include <optional>

namespace kv {
namespace {

using Files = std::vector<std::string>;

struct DropsTest : testing::Test, ListHost, DropsHost {
  DropsTest() { session.SupportedExtensions = "*.mp3;*.avi"; }

  using ListHost::OpenFile;
  void OpenFile(const std::string& path, OpenArguments arguments) override {
    opened.push_back(path + (arguments.StartPlaying ? " plays" : "") +
                     (arguments.KeepWindowSize ? " keeps" : ""));
  }
  void RefreshPlaylist() override { ++refreshed; }

  Drops drops{*this, adding, settings, session, dialogs};
  Files opened;
  int refreshed = 0;
};

TEST_F(DropsTest, OneThingIsOpenedOrAdded) {
  const std::string film = temp.Write("film.avi", "");
  const std::string list_file = temp.Write("list.M3U", "");
  const std::string folder = temp.MakeFolder("songs.m3u");
  const std::string song = temp.Write("songs.m3u/a.mp3", "");
  const struct {
    DropData data;
    bool adds;
    Files opened, list;
  } rows[] = {
      {{"http://a/b", {}}, true, {"http://a/b plays keeps"}, {}},
      {{{}, Files{film}}, false, {film + " plays"}, {}},
      {{{}, Files{film}}, true, {}, {film}},
      {{{}, Files{list_file}}, true, {list_file + " plays"}, {}},
      {{{}, Files{folder}}, false, {}, {song}},
      {{{}, Files{}}, false, {}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    opened.clear();
    list.Clear();
    settings.DragDropAddsToPlaylist = FromBool(row.adds);
    refreshed = 0;
    drops.Render_OLEDragDrop(row.data);
    EXPECT_EQ(opened, row.opened);
    EXPECT_EQ(Items(), row.list);
    EXPECT_EQ(refreshed, 1);
  }
  EXPECT_TRUE(dialogs.Boxes().empty());
  drops.Render_OLEDragDrop({});
  EXPECT_EQ(dialogs.LastText(), "DropSource not supported, error!\nTry using OPEN URL instead.");
}

TEST_F(DropsTest, SeveralAreAddedWhenTheUserWantsIt) {
  const DropData two{{}, Files{temp.Write("a.mp3", ""), temp.Write("b\xFF.mp3", "")}};
  dialogs.WillAnswer(BoxAnswer::kCancel);
  drops.Render_OLEDragDrop(two);
  EXPECT_TRUE(Items().empty());
  EXPECT_EQ(dialogs.LastText(), "Do you want to add the dropped elements to the playlist?");
  for (const bool adds : {true, false}) {
    list.Clear();
    settings.DragDropAddsToPlaylist = FromBool(adds);
    if (!adds) dialogs.WillAnswer(BoxAnswer::kOk);
    drops.Render_OLEDragDrop(two);
    EXPECT_EQ(Items(), *two.files);
  }
  dialogs.WillAnswer(BoxAnswer::kOk);
  dialogs.WhileOpen([this] { session.Unloading = true; });
  refreshed = 0;
  drops.Render_OLEDragDrop(two);
  EXPECT_EQ(Items().size(), 2U);
  EXPECT_EQ(refreshed, 0);
}

TEST(DropData, IsReadFromWhatDesktopsOffer) {
  using Text = std::optional<std::string_view>;
  const struct {
    Text uris, text;
    DropData data;
  } rows[] = {
      {{}, {}, {}},
      {"file:///a%20b%FF.mp3", "file:///a%20b", {{}, Files{"/a b\xFF.mp3"}}},
      {"http://a/b\r\nhttp://a/c\r\n", "a title", {"http://a/b", {}}},
      {"http://a/b\r\nfile:///c\r\n", {}, {{}, Files{"/c"}}},
      {"# nothing\r\nfile://\r\nfile:///a%00b\r\n", {}, {{}, Files{}}},
      {"FILE://host/100%.mp3\nfile:///%zz%4", {}, {{}, Files{"/100%.mp3", "/%zz%4"}}},
      {"", "http://a/b", {"http://a/b", Files{}}},
      {{}, "  http://a/b%20c\nmore", {"http://a/b%20c", {}}},
      {{}, "file:///a%20b.mp3", {"/a b.mp3", {}}},
      {{}, "  \n", {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const DropData data =
        ReadDropData(row.uris ? &*row.uris : nullptr, row.text ? &*row.text : nullptr);
    EXPECT_EQ(data.text, row.data.text);
    EXPECT_EQ(data.files, row.data.files);
  }
}

TEST_F(DropsTest, AnAddressIsDecodedAndRemembered) {
  Registry registry(temp.Path("store"));
  UrlEntry entry(registry, session, dialogs);
  EXPECT_EQ(entry.LastUrl(), "");
  const std::string odd = temp.Write("a+b%20.mp3", "");
  const std::pair<std::string, std::string> rows[] = {
      {"   ", ""},
      {" http://a/b%20c+d ", "http://a/b c d"},
      {odd, odd},
      {"/no/such+file.mp3", "/no/such file.mp3"},
      {"file://" + temp.Path() + "a+b%2520.mp3", odd},
      {"MMS://a/b", "MMS://a/b"},
  };
  for (const auto& [typed, result] : rows) {
    EXPECT_EQ(entry.Accept(typed), result);
    EXPECT_EQ(entry.LastUrl(), result);
  }
  EXPECT_TRUE(dialogs.Boxes().empty());
  EXPECT_EQ(entry.Accept("notes.txt"), "");
  EXPECT_EQ(dialogs.LastText(), "Unsupported format! You must type a path to a SUPPORTED file!");
  EXPECT_EQ(entry.LastUrl(), "MMS://a/b");

  EXPECT_EQ(entry.Accept("http://me:secret@a/b"), "http://me:secret@a/b");
  EXPECT_EQ(entry.Accept("http://a/b c d"), "http://a/b c d");
  EXPECT_EQ(entry.Earlier(),
            (Files{"http://a/b c d", "http://a/b", "MMS://a/b", odd, "/no/such file.mp3"}));
  EXPECT_EQ(temp.Read("store").find("secret"), std::string::npos);
  for (int i = 0; i < 30; ++i) entry.Accept("http://a/" + std::to_string(i));
  EXPECT_EQ(entry.Earlier().size(), 20U);
  EXPECT_EQ(entry.Earlier().back(), "http://a/10");
}

}  // namespace
}  // namespace kv
