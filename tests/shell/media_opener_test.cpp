// `OpenFile` on the true road: engine, sliders, time display and status strip over a fake graph.
#include "shell/media_opener.h"

#include "shell/opener_player.h"
#include "shell/recent_files.h"

namespace kv {
namespace {

using testing::IsSupersetOf;

TEST(MediaOpener, SetsTheWindowUpForTheMedium) {
  OpenerPlayer player;
  player.settings.AutoZoom = FromBool(true);
  player.Play("/m/b.mp3");
  player.log.clear();
  player.opener.OpenFile("/m/a.avi", {.StartPlaying = true, .ShowOnOpen = true});
  EXPECT_THAT(player.log, IsSupersetOf({"title Loading a.avi", "menu", "restore", "marks",
                                        "button 0", "data", "zoom 1.000000", "meter"}));
  EXPECT_EQ(player.slider1.Max(), 100);
  EXPECT_EQ(player.session.MovieWidth, 640);
  EXPECT_EQ(player.session.MovieHeight, 480);
  EXPECT_EQ(player.factory.Current()->Owner(), 7U);
  EXPECT_TRUE(player.movie.DS_IsRunning());

  // Neither sound nor a kept size, and no window that is brought up for sound.
  player.log.clear();
  player.opener.OpenFile("/m/b.mp3", {.KeepWindowSize = true, .ShowOnOpen = true});
  for (const char* call : {"restore", "zoom 1.000000", "button 0"}) {
    EXPECT_EQ(player.Logged(call), 0) << call;
  }
}

TEST(MediaOpener, TreatsEachSourceInItsWay) {
  using enum ConnectionIcon;
  const struct {
    std::string path, entry;  // what the metafile leads to
    const char* sliders;      // nothing: as they were
    bool status;
    ConnectionIcon icon;
  } rows[] = {
      {"/m/plain.ASF", "", "sliders on", false, kNone},
      {"http://h/x", "", "sliders on", true, kPlain},
      {"HTTPS://h/x.mp3", "", "sliders on", true, kSecure},
      {"mms://h/x", "", "sliders on", true, kNone},
      {"/m/list.asx", "MMS://h/s", "", true, kNone},
      {"/m/list.wax", "http://h/s", "sliders off", true, kNone},
      {"https://h/list.asf", "ftp://h/s", "sliders off", true, kSecure},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    OpenerPlayer player;
    const std::string target = row.entry.empty() ? row.path : row.entry;
    player.factory.media[target] = {.duration = 20};
    player.asx[row.path] = {"The title", "", "", "", row.entry};
    player.session.AsxInfo.entry = "http://left/over";
    player.slider3.SetValue(30);
    player.slider1.SetMax(50);
    player.slider1.SetValue(40);
    player.log.clear();
    player.Play(row.path);

    EXPECT_EQ(player.Rendered(target), 1);
    const auto shown = std::find(player.log.begin(), player.log.end(),
                                 "status Connecting to remote media, please wait...");
    EXPECT_EQ(shown != player.log.end(), row.status);
    EXPECT_EQ(std::count(shown, player.log.end(), "no status"), row.status);
    for (const char* sliders : {"sliders on", "sliders off"}) {
      EXPECT_EQ(player.Logged(sliders), sliders == std::string(row.sliders));
    }
    EXPECT_EQ(player.settings.CurrentFile, row.path);
    EXPECT_EQ(player.icon, row.icon);
    EXPECT_EQ(player.session.AsxInfo.entry, row.entry);
    EXPECT_EQ(player.slider1.Value(), 0);
    EXPECT_EQ(player.slider3.Value(), row.entry.empty() ? 30 : 20);
    EXPECT_EQ(player.strip == "The title", player.Logged("sliders off") == 1);
    EXPECT_THAT(player.dialogs.Boxes(), IsEmpty());
  }
}

TEST(MediaOpener, BringsTheSlidersIntoTheEngine) {
  OpenerPlayer player;
  player.slider2.SetValue(0);
  player.slider4.SetValue(12);
  player.Play("/m/a.avi");
  EXPECT_EQ(player.movie.DS_GetVolume(), -5000);
  EXPECT_EQ(player.movie.DS_GetBalance(), 3000);
  EXPECT_EQ(player.movie.DS_GetRate(), 1.0);
  player.slider3.SetValue(30);
  player.Play("/m/b.mp3");
  EXPECT_EQ(player.movie.DS_GetRate(), 1.5);
  EXPECT_EQ(player.movie.DS_GetVolume(), -5000);
}

TEST(MediaOpener, GoesOnAfterAFailedRender) {
  OpenerPlayer player;
  player.Play("/m/a.avi");
  player.icon = ConnectionIcon::kPlain;
  player.Play("/m/broken.avi");
  EXPECT_EQ(player.dialogs.LastText(), "Error opening \"/m/broken.avi\"");
  EXPECT_EQ(player.Shown(), "/m/broken.avi||0 s||-1 to -1|");
  EXPECT_EQ(player.settings.RecentFiles[0] + player.settings.RecentFiles[1],
            "/m/broken.avi/m/a.avi");
  EXPECT_TRUE(player.movie.DS_IsOpen());
  EXPECT_EQ(player.session.MovieWidth, 0);
  EXPECT_EQ(player.icon, ConnectionIcon::kNone);

  // What is told is the address of the stream; what is kept is the file that the user named.
  player.asx["/m/list.asx"].entry = "http://me:pw@h/dead";
  player.factory.media["http://me:pw@h/dead"] = {.renders = false, .certificate_refused = true};
  player.Play("/m/list.asx");
  EXPECT_EQ(player.dialogs.LastText(),
            "Error opening \"http://h/dead\"\n\n"
            "The server could not prove who it is: its certificate is not trusted.");
  EXPECT_EQ(player.settings.RecentFiles[0], "/m/list.asx");
}

TEST(MediaOpener, RefusesWhatItDoesNotKnowAndLeavesThePlayingMediumAlone) {
  OpenerPlayer player;
  player.Play("/m/a.avi");
  player.session.ResumePosition = 5;
  player.factory.calls.clear();
  for (const char* path : {"/m/x.txt", "gopher://h/x", "c:\\m\\x.doc"}) {
    player.Play(path);
    EXPECT_EQ(player.dialogs.LastText(), "Unsupported file format or protocol error!") << path;
  }
  EXPECT_THAT(player.factory.calls, IsEmpty());
  EXPECT_EQ(player.Shown(), "/m/a.avi|/m/a.avi|100 s||5 to -1|");
  EXPECT_EQ(player.settings.RecentFiles[1], "");
}

TEST(MediaOpener, AsksForAFileUntilItIsOneOrNone) {
  OpenerPlayer player;
  player.settings.AutoZoom = FromBool(true);
  player.Play("/m/b.mp3");
  player.settings.LastOpenFolder = "/last/";
  player.factory.calls.clear();
  player.dialogs.WillPickFile("/m/x.txt");
  player.dialogs.WillPickFile("");
  player.opener.OpenFile("", {});
  EXPECT_EQ(player.dialogs.LastText(), "Unsupported fileformat error!");
  EXPECT_THAT(player.factory.calls, IsEmpty());
  EXPECT_EQ(player.settings.CurrentFile, "/m/b.mp3");

  player.dialogs.WillPickFile("/m/a.avi");
  player.log.clear();
  player.opener.OpenFile("", {.KeepWindowSize = true});
  EXPECT_EQ(player.Logged("zoom 1.000000"), 1);
  EXPECT_EQ(player.settings.CurrentFile, "/m/a.avi");
  const FileDialogRequest& request = player.dialogs.FileRequests().back();
  EXPECT_EQ(request.folder + request.filter, "/last/All|*.*");
}

TEST(MediaOpener, GivesAPlaylistAwayWithoutTheEngine) {
  OpenerPlayer player;
  player.Play("/m/a.avi");
  player.settings.PlayingFromPlaylist = FromBool(true);
  player.session.ResumeEndPosition = 5;
  player.factory.calls.clear();
  player.log.clear();
  player.Play("/lists/mine.M3U");
  EXPECT_THAT(player.log,
              ElementsAre("no status", "title Loading mine.M3U", "playlist /lists/mine.M3U"));
  EXPECT_THAT(player.factory.calls, IsEmpty());
  EXPECT_EQ(player.settings.LastOpenFolder, "/lists/");
  EXPECT_TRUE(IsOn(player.settings.PlayingFromPlaylist));
  EXPECT_EQ(player.Shown(), "/m/a.avi|/m/a.avi|100 s||-1 to -1|");
}

TEST(MediaOpener, RemembersOnlyWhatTheUserOpenedOutsideTheList) {
  OpenerPlayer player;
  player.session.StartingUp = true;
  player.settings.PreviousItemPosition = 3;
  player.settings.LastOpenFolder = "/last/";
  for (const int milliseconds : {12'000, 5'000}) {
    player.opener.OpenFile("/m/a.avi", {.FromPlaylist = true, .StartPlaying = true});
    EXPECT_TRUE(IsOn(player.settings.PlayingFromPlaylist));
    EXPECT_EQ(player.settings.LastOpenFolder + player.settings.RecentFiles[0], "/last/");
    player.time.Advance(milliseconds);
  }
  player.Play("/m/b.mp3");  // the window is still being made
  EXPECT_EQ(player.settings.PreviousItemPosition, 3);
  EXPECT_FALSE(IsOn(player.settings.PlayingFromPlaylist));
  player.session.StartingUp = false;
  player.time.Advance(4000);
  player.Play("/m/a.avi");
  EXPECT_EQ(player.settings.PreviousItemPosition, 4);
  EXPECT_EQ(player.settings.LastOpenFolder, "/m/");
}

TEST(MediaOpener, KeepsTheSectionAndTheMarkOfAResumeFile) {
  OpenerPlayer player;
  player.resume_target = "/m/a.avi";
  player.Play("/r/later.KVR");
  EXPECT_EQ(player.Shown(), "/m/a.avi|/m/a.avi|100 s||7 to 9|marked /r/later.KVR");
  EXPECT_EQ(player.settings.LastOpenFolder, "/r/");
  EXPECT_FALSE(player.movie.DS_IsRunning());
  player.Play("/m/b.mp3");
  EXPECT_EQ(player.Shown(), "/m/b.mp3|/m/b.mp3|50 s||-1 to -1|");
}

TEST(RecentFiles, HoldEachNameOnceAndTheNewestFirst) {
  const FakeTextPlatform text;
  RecentFileList list;
  for (int i = 0; i <= 10; ++i) AddRecentFile(list, "/m/" + std::to_string(i), text);
  EXPECT_EQ(list.front(), "/m/10");
  EXPECT_EQ(list.back(), "/m/1");  // the eleventh has pushed out the oldest
  list = {"/a", "/\xC3\xA4", "", "/\xFF"};
  for (const char* again : {"/\xFF", "/\xC3\x84"}) AddRecentFile(list, again, text);
  EXPECT_THAT(list, ElementsAre("/\xC3\x84", "/\xFF", "/a", "", "", "", "", "", "", ""));
}

TEST(StatusOverlay, WatchesAStreamUntilItsFirstPosition) {
  OpenerPlayer player;
  player.factory.media["http://h/live"] = {.duration = 0};
  player.opener.OpenFile("http://h/live", {});
  player.log.clear();
  player.status.ShowStatus(StatusOverlay::kBuffering);
  player.time.Advance(10000);
  player.status.ShowStatus(StatusOverlay::kBuffering);  // the wait starts over
  player.time.Advance(14999);
  EXPECT_EQ(player.Logged("status Buffering, please wait..."), 2);
  player.movie.DS_Play();
  player.time.Advance(251);
  EXPECT_EQ(player.dialogs.LastText(), "Buffering timed out!");
  EXPECT_EQ(player.Logged("no status") + player.time.ActiveTimers(), 1);
  EXPECT_TRUE(player.movie.DS_IsRunning());

  player.status.ShowStatus(StatusOverlay::kBuffering);
  player.time.Advance(250);
  EXPECT_EQ(player.Logged("no status") + player.time.ActiveTimers(), 2);
  EXPECT_EQ(player.dialogs.Boxes().size(), 1U);
}

}  // namespace
}  // namespace kv
