#include "playlist/details_loader.h"

#include "playlist/list_room.h"
#include "playlist/media_details.h"
#include "support/fake_readers.h"

#include <future>
#include <thread>

namespace kv {
namespace {

using Strings = std::vector<std::string>;

TEST(MediaDetails, TakesTheTagThatIsThereAndMeasuresMpegAlone) {
  FakeTextPlatform text;
  text.decimal_separator = ",";
  const TempFolder folder;
  const std::string path = folder.Write("my song.Mp3", std::string(2048, 'x'));
  const std::string sound = "00:01:00|128|44100", file = "|2,00 KB|Mp3";
  const struct {
    bool mpeg, v1, v2;
    std::string title, expected;
  } rows[] = {
      {true, true, true, " Le titre ", "Le titre|v1 artist|al bum|Rock|" + sound + file},
      {true, false, true, "Le titre", "Le titre|v2 artist|al bum|Rock|" + sound + file},
      {true, true, false, " \t ", "My Song|v1 artist|al bum|Rock|" + sound + file},
      {true, false, false, "x", "||||" + sound + file},
      {false, true, true, "x", "||||||" + file},
  };
  for (const auto& row : rows) {
    FakeReaders readers;
    readers.header = row.mpeg;
    readers.v1 = {row.v1, row.title, "v1 artist", "al\nbum", 17};
    readers.v2 = {row.v2, row.title, "v2 artist", "al\nbum", 17};
    const MediaDetails read = ReadMediaDetails(path, readers, text, ",");
    EXPECT_EQ(read.title + "|" + read.artist + "|" + read.album + "|" + read.genre + "|" +
                  read.time + "|" + read.bitrate + "|" + read.frequency + "|" + read.file_size +
                  "|" + read.extension,
              row.expected);
  }
  FakeReaders flood;
  flood.v1.has_tag = true;
  for (int i = 0; i < 100000; ++i) flood.v1.title += "ä";
  EXPECT_EQ(ReadMediaDetails(path, flood, text, ".").title.size(), 2 * kMaxDetailCharacters);
}

MediaDetails Titled(const std::string& title) {
  MediaDetails details;
  details.title = title;
  return details;
}

struct Loading : ListRoom {
  explicit Loading(int count) {
    settings.PlaylistShowDetails = FromBool(true);
    Strings paths;
    for (int i = 1; i <= count; ++i) paths.push_back("/" + std::to_string(i));
    Load(paths);
  }
  std::ptrdiff_t Filled() const {
    const Strings titles = Cells(6);
    return std::count_if(titles.begin(), titles.end(), [](auto& title) { return !title.empty(); });
  }
};

TEST(DetailsLoader, ASlowFileHoldsUpNothingButItsRow) {
  Loading room(3);
  room.read_at_once = false;
  room.Run(50);
  EXPECT_EQ(room.Filled(), 0);
  EXPECT_EQ(room.pump.Pumps(), 1);  // announced once
  room.files.ReadOne();
  room.Run(2);
  EXPECT_EQ(room.Filled(), 1);
  room.form.Closing = true;  // ends the walk in the next tick
  room.Run(1);
  EXPECT_EQ(room.time.ActiveTimers(), 0);
  EXPECT_FALSE(room.files.ReadOne());
}

TEST(DetailsLoader, AWalkSurvivesWhatHappensToTheRows) {
  const auto remove = [](Loading& room, int first, int last) {
    room.rows.SelectRange(first, last, true);
    room.order.RemoveSel(false);
  };
  const struct {
    const char* what;
    std::function<void(Loading&)> change;  // with 10 of 20 rows filled
  } rows[] = {
      {"nothing", [](Loading&) {}},
      {"rows above go", [&](Loading& room) { remove(room, 1, 3); }},
      {"all but some go", [&](Loading& room) { remove(room, 5, 20); }},
      {"all go", [](Loading& room) { room.order.ClearList(); }},
      {"a filled row changes places with the next",
       [](Loading& room) {
         room.Select({10});
         room.order.MoveFilesDown();
       }},
      {"sorted", [](Loading& room) { room.order.SList(); }},
      {"a row comes",
       [](Loading& room) {
         room.list.add("/new");
         room.rows.FillPlaylist("/new");
       }},
      {"too many rows",
       [](Loading& room) {
         room.list.Remove(20);
         room.rows.Remove({20});
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Loading room(20);
    room.Run(11);
    EXPECT_EQ(room.Filled(), 10);
    EXPECT_EQ(room.rows.Status(), "Loading details...");
    row.change(room);
    room.Run(60);
    for (int i = 1; i <= room.rows.RowCount(); ++i) {
      EXPECT_EQ(room.rows.SubItem(i, 6), "T" + room.list.Item(i));  // of its own item
    }
    EXPECT_EQ(room.form.DetailsCursor, 0);
    EXPECT_EQ(room.time.ActiveTimers(), 0);
    EXPECT_EQ(room.rows.Status(), std::to_string(room.rows.RowCount()) + " items in list.");
  }
}

TEST(DetailsReadAhead, ResultsNobodyWantsAnyMoreAreDropped) {
  int reads = 0;
  DetailsReadAhead files(
      [&reads](const std::string& path) {
        ++reads;
        return path == "/bad" ? throw std::runtime_error("no") : Titled(path);
      },
      DetailsReadAhead::Worker::kByHand);
  files.Want({"/a", "/bad", "/a"});
  while (files.ReadOne()) {
  }
  EXPECT_EQ(reads, 2);
  EXPECT_EQ(files.Take("/bad"), MediaDetails{});
  files.Want({"/b"});
  EXPECT_FALSE(files.Take("/a"));
}

TEST(DetailsReadAhead, AReadThatHangsIsLeftBehind) {
  struct Mount {
    std::promise<void> entered, released, left;
  };
  const auto mount = std::make_shared<Mount>();
  {
    DetailsReadAhead files([mount](const std::string& path) {
      if (path == "/hangs") {
        mount->entered.set_value();
        mount->released.get_future().wait();
        mount->left.set_value();
      }
      return Titled(path);
    });
    files.Want({"/hangs", "/a"});
    mount->entered.get_future().wait();
    EXPECT_FALSE(files.Take("/a"));
    files.Abandon();
    files.Want({"/a"});
    std::optional<MediaDetails> details;
    while (!(details = files.Take("/a"))) std::this_thread::yield();
    EXPECT_EQ(details->title, "/a");
  }  // does not wait for the mount
  mount->released.set_value();
  mount->left.get_future().wait();
}

}  // namespace
}  // namespace kv
