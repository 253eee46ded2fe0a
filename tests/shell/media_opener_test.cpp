// `OpenFile` on the true road: engine, sliders, time display and status strip over a fake graph.
#include "shell/media_opener.h"

#include "shell/opener_player.h"
#include "shell/recent_files.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

constexpr const char* kConnecting = "status Connecting to remote media, please wait...";

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
  EXPECT_THAT(player.log, Not(Contains("restore")));
  EXPECT_THAT(player.log, Not(Contains("zoom 1.000000")));
  EXPECT_THAT(player.log, Not(Contains("button 0")));
}

TEST(MediaOpener, TreatsEachSourceInItsWay) {
  enum { kOn, kOff, kAsTheyWere };
  const struct {
    std::string path;
    std::string entry;  // what the metafile leads to
    int sliders;
    bool status;
    ConnectionIcon icon;
  } rows[] = {
      {"/m/plain.ASF", "", kOn, false, ConnectionIcon::kNone},
      {"http://h/x", "", kOn, true, ConnectionIcon::kPlain},
      {"HTTPS://h/x.mp3", "", kOn, true, ConnectionIcon::kSecure},
      {"mms://h/x", "", kOn, true, ConnectionIcon::kNone},
      {"/m/list.asx", "MMS://h/s", kAsTheyWere, true, ConnectionIcon::kNone},
      {"/m/list.wax", "http://h/s", kOff, true, ConnectionIcon::kNone},
      {"https://h/list.asf", "ftp://h/s", kOff, true, ConnectionIcon::kSecure},
  };
  for (const auto& row : rows) {
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

    EXPECT_EQ(player.Rendered(target), 1) << row.path;
    EXPECT_EQ(std::count(player.log.begin(), player.log.end(), kConnecting), row.status)
        << row.path;
    const auto shown = std::find(player.log.begin(), player.log.end(), kConnecting);
    EXPECT_EQ(std::count(shown, player.log.end(), "no status"), row.status) << row.path;
    EXPECT_EQ(std::count(player.log.begin(), player.log.end(), "sliders on"), row.sliders == kOn);
    EXPECT_EQ(std::count(player.log.begin(), player.log.end(), "sliders off"), row.sliders == kOff);
    EXPECT_EQ(player.settings.CurrentFile, row.path);
    EXPECT_EQ(player.icon, row.icon) << row.path;
    EXPECT_EQ(player.session.AsxInfo.entry, row.entry);
    EXPECT_EQ(player.slider1.Value(), 0);
    EXPECT_EQ(player.slider3.Value(), row.entry.empty() ? 30 : 20);
    if (row.sliders == kOff) {
      EXPECT_EQ(player.strip, "The title");
    }
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
  player.Play("/m/broken.avi");
  EXPECT_EQ(player.dialogs.LastText(), "Error opening \"/m/broken.avi\"");
  EXPECT_EQ(player.settings.CurrentFile, "/m/broken.avi");
  EXPECT_EQ(player.settings.RecentFiles[0], "/m/broken.avi");
  EXPECT_EQ(player.settings.RecentFiles[1], "/m/a.avi");
  EXPECT_TRUE(player.movie.DS_IsOpen());
  EXPECT_EQ(player.movie.DS_CurFile(), "");
  EXPECT_EQ(player.slider1.Max(), 0);
  EXPECT_EQ(player.session.MovieWidth, 0);
  EXPECT_EQ(player.log.back(), "icon");

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
  EXPECT_EQ(player.settings.CurrentFile, "/m/a.avi");
  EXPECT_EQ(player.settings.RecentFiles[1], "");
  EXPECT_EQ(player.session.ResumePosition, 5);
}

TEST(MediaOpener, AsksForAFileUntilItIsOneOrNone) {
  OpenerPlayer player;
  player.settings.AutoZoom = FromBool(true);
  player.settings.LastOpenFolder = "/last/";
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
  player.opener.OpenFile("", {.KeepWindowSize = true});
  EXPECT_THAT(player.log, Contains("zoom 1.000000"));
  EXPECT_EQ(player.settings.CurrentFile, "/m/a.avi");
  EXPECT_EQ(player.dialogs.FileRequests().back().filter, "All|*.*");
  EXPECT_EQ(player.dialogs.FileRequests().back().folder, "/last/");
}

TEST(MediaOpener, GivesAPlaylistAwayWithoutTheEngine) {
  OpenerPlayer player;
  player.Play("/m/a.avi");
  player.settings.PlayingFromPlaylist = FromBool(true);
  player.session.ResumeEndPosition = 5;
  player.factory.calls.clear();
  player.log.clear();
  player.Play("/lists/mine.M3U");
  EXPECT_THAT(player.log, ElementsAre("no status", "title Loading mine.M3U", "tip ", "no mark",
                                      "playlist /lists/mine.M3U"));
  EXPECT_THAT(player.factory.calls, IsEmpty());
  EXPECT_EQ(player.settings.LastOpenFolder, "/lists/");
  EXPECT_EQ(player.settings.CurrentFile, "/m/a.avi");
  EXPECT_TRUE(IsOn(player.settings.PlayingFromPlaylist));
  EXPECT_EQ(player.session.ResumeEndPosition, kNoPosition);
}

TEST(MediaOpener, RemembersOnlyWhatTheUserOpenedOutsideTheList) {
  OpenerPlayer player;
  player.session.StartingUp = true;
  player.settings.PreviousItemPosition = 3;
  player.settings.LastOpenFolder = "/last/";
  player.opener.OpenFile("/m/a.avi", {.FromPlaylist = true, .StartPlaying = true});
  EXPECT_TRUE(IsOn(player.settings.PlayingFromPlaylist));
  EXPECT_EQ(player.settings.RecentFiles[0], "");
  EXPECT_EQ(player.settings.LastOpenFolder, "/last/");
  player.time.Advance(12000);
  player.opener.OpenFile("/m/a.avi", {.FromPlaylist = true, .StartPlaying = true});
  EXPECT_EQ(player.settings.PreviousItemPosition, 3);
  player.time.Advance(5000);
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
  EXPECT_EQ(player.settings.CurrentFile, "/m/a.avi");
  EXPECT_EQ(player.session.ResumePosition, 7);
  EXPECT_EQ(player.session.ResumeEndPosition, 9);
  EXPECT_TRUE(player.resume_mark);
  EXPECT_EQ(player.tool_tip, "/r/later.KVR");
  EXPECT_EQ(player.settings.LastOpenFolder, "/r/");
  EXPECT_FALSE(player.movie.DS_IsRunning());

  player.Play("/m/b.mp3");
  EXPECT_EQ(player.session.ResumePosition, kNoPosition);
  EXPECT_EQ(player.session.ResumeEndPosition, kNoPosition);
  EXPECT_FALSE(player.resume_mark);
  EXPECT_EQ(player.tool_tip, "");
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
  EXPECT_THAT(player.log,
              ElementsAre("status Buffering, please wait...", "status Buffering, please wait..."));
  player.movie.DS_Play();
  player.time.Advance(251);
  EXPECT_EQ(player.dialogs.LastText(), "Buffering timed out!");
  EXPECT_EQ(player.log.back(), "no status");
  EXPECT_EQ(player.time.ActiveTimers(), 0);
  EXPECT_TRUE(player.movie.DS_IsRunning());

  player.status.ShowStatus(StatusOverlay::kBuffering);
  player.time.Advance(250);
  EXPECT_EQ(player.log.back(), "no status");
  EXPECT_EQ(player.time.ActiveTimers(), 0);
  EXPECT_EQ(player.dialogs.Boxes().size(), 1U);
}

}  // namespace
}  // namespace kv
