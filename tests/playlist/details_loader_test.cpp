#include "playlist/details_loader.h"

#include "playlist/list_room.h"
#include "playlist/media_details.h"
#include "support/fake_readers.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace kv {
namespace {

using Strings = std::vector<std::string>;

TEST(MediaDetails, TakesTheTagThatIsThereAndMeasuresMpegAlone) {
  FakeTextPlatform text;
  text.decimal_separator = ",";
  const TempFolder folder;
  const std::string path = folder.Path("my song.Mp3");
  std::ofstream(path) << std::string(2048, 'x');
  const std::string size = "2,00 KB";
  const struct {
    bool mpeg, v1, v2;
    std::string title;
    std::string title_shown, artist;
  } rows[] = {
      {true, true, true, " Le titre ", "Le titre", "v1 artist"},
      {true, false, true, "Le titre", "Le titre", "v2 artist"},
      {true, true, false, " \t ", "My Song", "v1 artist"},
      {true, false, false, "x", "", ""},
      {false, true, true, "x", "", ""},
  };
  for (const auto& row : rows) {
    FakeReaders readers;
    readers.header = row.mpeg;
    readers.v1 = {row.v1, row.title, "v1 artist", "al\nbum", 17};
    readers.v2 = {row.v2, row.title, "v2 artist", "al\nbum", 17};
    const MediaDetails details = ReadMediaDetails(path, readers, text, ",");
    EXPECT_EQ(details.title, row.title_shown);
    EXPECT_EQ(details.artist, row.artist);
    EXPECT_EQ(details.album, row.artist.empty() ? "" : "al bum");
    EXPECT_EQ(details.genre, row.artist.empty() ? "" : "Rock");
    EXPECT_EQ(details.time, row.mpeg ? "00:01:00" : "");
    EXPECT_EQ(details.bitrate, row.mpeg ? "128" : "");
    EXPECT_EQ(details.frequency, row.mpeg ? "44100" : "");
    EXPECT_EQ(details.file_size, size);
    EXPECT_EQ(details.extension, "Mp3");
  }
  FakeReaders flood;
  flood.v1.has_tag = true;
  for (int i = 0; i < 100000; ++i) flood.v1.title += "ä";
  EXPECT_EQ(ReadMediaDetails(path, flood, text, ".").title.size(), 2 * kMaxDetailCharacters);
}

class Loading : public ListRoom {
 public:
  explicit Loading(int count) {
    settings.PlaylistShowDetails = FromBool(true);
    Strings paths;
    for (int i = 1; i <= count; ++i) paths.push_back("/" + std::to_string(i));
    Load(paths);
  }
  int Filled() const {
    const Strings titles = Cells(6);
    return static_cast<int>(titles.size() -
                            static_cast<std::size_t>(std::count(titles.begin(), titles.end(), "")));
  }
  // Every row shows the details of its own item.
  void ExpectAllFilled() const {
    for (int row = 1; row <= rows.RowCount(); ++row) {
      EXPECT_EQ(rows.SubItem(row, 6), "T" + list.Item(row));
    }
    EXPECT_EQ(form.DetailsCursor, 0);
    EXPECT_EQ(time.ActiveTimers(), 0);
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
  const struct {
    const char* what;
    std::function<void(Loading&)> change;  // with 10 of 20 rows filled
  } rows[] = {
      {"nothing", [](Loading&) {}},
      {"rows above go",
       [](Loading& room) {
         room.Select({1, 2, 3});
         room.order.RemoveSel(false);
       }},
      {"all but some go",
       [](Loading& room) {
         room.rows.SelectRange(5, 20, true);
         room.order.RemoveSel(false);
       }},
      {"all go", [](Loading& room) { room.order.ClearList(); }},
      {"a filled row changes places with the next",
       [](Loading& room) {
         room.Select({10});
         room.order.MoveFilesDown();
       }},
      {"sorted", [](Loading& room) { room.order.SList(); }},
      {"shuffled", [](Loading& room) { room.order.RList(); }},
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
    room.ExpectAllFilled();
    EXPECT_EQ(room.rows.Status(), std::to_string(room.rows.RowCount()) + " items in list.");
  }
}

TEST(DetailsReadAhead, ResultsNobodyWantsAnyMoreAreDropped) {
  int reads = 0;
  DetailsReadAhead files(
      [&reads](const std::string& path) {
        ++reads;
        if (path == "/bad") throw std::runtime_error("no");
        MediaDetails details;
        details.title = path;
        return details;
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
      MediaDetails details;
      details.title = path;
      return details;
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
