// Resume files on the disk, the engine over a fake graph.
#include "shell/resume_files.h"

#include "support/fake_text_platform.h"
#include "support/movie_world.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ResumeFilesTest : public testing::Test, protected MovieWorld, protected ResumeFilesHost {
 protected:
  ResumeFilesTest() {
    film = MakeMedium("Film.avi");
    other = MakeMedium("other.avi");
    settings.LastOpenFolder = "/start/";
    settings.CurrentFile = film;
    session.FormLoaded = true;
  }

  std::string MakeMedium(const std::string& name) {
    std::string path = temp.Write(name, "film");
    factory.media[path] = {.duration = 100.0};
    return path;
  }

  // As the opener: what it accepts becomes the current file.
  void OpenFile(const std::string& path, bool from_playlist) override {
    log.push_back((from_playlist ? "open as entry " : "open ") + path);
    if (refuse_open) return;
    movie.DS_OpenFile(path, 0, 0, 320, 200, 7);
    settings.CurrentFile = path;
    if (after_open) after_open();
  }
  void UpdateFileDisp(const std::string& name) override { log.push_back("name" + name); }
  void ShowResumeMark(bool visible) override { log.emplace_back(visible ? "mark" : "no mark"); }

  // Film.avi at a position, playing.
  void PlayFrom(double position) {
    movie.DS_OpenFile(film, 0, 0, 320, 200, 7);
    movie.DS_SetPosition(position);
    movie.DS_Play();
  }

  bool Open(std::string_view content) {
    temp.Write("r.kvr", content);
    bool from_playlist = false;
    resume.OpenResumeFile(temp.Path("r.kvr"), from_playlist, true);
    return from_playlist;
  }
  static std::string Section(const std::string& path, const std::string& rest) {
    return "[RESUME_FILE]\r\nPath=" + path + "\r\n" + rest;
  }

  TempFolder temp;
  std::string film;
  std::string other;
  ScriptedDialogs dialogs;
  FakeTextPlatform text;
  OSTList list{text};
  bool refuse_open = false;
  std::function<void()> after_open;
  std::vector<std::string> log;
  ResumeFiles resume{*this, {movie, settings, session, list, dialogs, pump, text}};
};

TEST_F(ResumeFilesTest, SavesWhereTheMediumStands) {
  PlayFrom(34.5);
  settings.PlayingFromPlaylist = -1;
  settings.PlaylistIndex = 12;
  dialogs.WhileOpen([this] { time.Advance(5000); });  // it is halted meanwhile
  dialogs.WillPickFile(temp.Path("new.txt"));
  resume.SaveResumeFile(false, false);
  EXPECT_EQ(temp.Read("new.txt.kvr"),
            "[RESUME_FILE]\r\nPath=" + film + "\r\nPOS=34.5\r\nPLFile=-1\r\nPLID=12\r\n");
  EXPECT_EQ(session.ResumePosition, 34.5);
  EXPECT_EQ(session.ResumeEndPosition, 0.0);
  EXPECT_EQ(settings.LastOpenFolder, temp.Path());
  EXPECT_THAT(log, ElementsAre("mark"));
  EXPECT_TRUE(Playing());
  EXPECT_EQ(dialogs.FileRequests().front().folder, "/start/");
  EXPECT_EQ(dialogs.FileRequests().front().file_name, "Film.avi");

  movie.DS_Pause();
  dialogs.WillPickFile(temp.Path("PAUSED.KVR"));
  resume.SaveResumeFile(false, false);
  EXPECT_NE(temp.Read("PAUSED.KVR"), "");
  EXPECT_TRUE(movie.DS_IsPaused());
}

TEST_F(ResumeFilesTest, AsksBeforeItReplacesAndReplacesAsAWhole) {
  const std::string name = temp.Write("r.kvr", "[RESUME_FILE]\nENDPOS=50\n[mine]\na=b\n");
  chmod(name.c_str(), 0400);
  PlayFrom(10);
  dialogs.WillPickFile(name);
  dialogs.WillAnswer(BoxAnswer::kCancel);
  resume.SaveResumeFile(false, false);
  EXPECT_THAT(temp.Read("r.kvr"), HasSubstr("mine"));
  EXPECT_EQ(session.ResumePosition, kNoPosition);
  EXPECT_TRUE(movie.DS_IsPaused());
  EXPECT_EQ(dialogs.LastText(), "The file \"" + name + "\" already exist!\n\nOverwrite ?");

  dialogs.WillPickFile(name);
  dialogs.WillAnswer(BoxAnswer::kOk);
  resume.SaveResumeFile(false, false);
  EXPECT_EQ(temp.Read("r.kvr"),
            "[RESUME_FILE]\r\nPath=" + film + "\r\nPOS=10\r\nPLFile=0\r\nPLID=0\r\n");
  struct stat status {};
  ASSERT_EQ(stat(name.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(ResumeFilesTest, ASaveThatFailsTellsItAndPlaysOn) {
  const std::string name = temp.MakeFolder("folder.kvr");
  PlayFrom(10);
  dialogs.WillPickFile(name);
  resume.SaveResumeFile(false, false);
  EXPECT_EQ(dialogs.LastText(), "Error saving \"" + name + "\"");

  settings.CurrentFile = "/m/two\nlines.avi";  // a name that no line can hold
  const std::string old = temp.Write("old.kvr", "old");
  dialogs.WillPickFile(old);
  dialogs.WillAnswer(BoxAnswer::kOk);
  resume.SaveResumeFile(false, false);
  EXPECT_EQ(dialogs.LastText(), "Error saving \"" + old + "\"");
  EXPECT_EQ(temp.Read("old.kvr"), "old");
  EXPECT_EQ(session.ResumePosition, kNoPosition);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_FALSE(movie.DS_IsPaused());
}

TEST_F(ResumeFilesTest, SetsAndClearsTheEndInAFileThatTheUserHasEdited) {
  const std::string edited =
      "; mine\n[other]\nENDPOS=7\n[resume_file]\nPATH = " + text.Upper(film) + " \nnote=x\npos=3\n";
  const std::string name = temp.Write("r.kvr", edited);
  PlayFrom(60.25);
  dialogs.WillPickFile(temp.Path("missing.kvr"));
  dialogs.WillPickFile(name);
  resume.SaveResumeFile(true, false);
  ASSERT_EQ(dialogs.Boxes().size(), 1U);
  EXPECT_EQ(dialogs.LastText(), "The specified file does not exist!");
  EXPECT_EQ(temp.Read("r.kvr"), edited + "ENDPOS=60.25\n");
  EXPECT_EQ(session.ResumeEndPosition, 60.25);
  EXPECT_EQ(session.ResumePosition, kNoPosition);
  EXPECT_TRUE(movie.DS_IsPaused());

  settings.CurrentFile = other;  // the file may be any when the end is taken out
  dialogs.WillPickFile(name);
  resume.SaveResumeFile(true, true);
  EXPECT_EQ(temp.Read("r.kvr"), edited + "ENDPOS=-1\n");
  EXPECT_EQ(session.ResumeEndPosition, 60.25);
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(ResumeFilesTest, NoEndIsWrittenIntoAFileOfAnotherMedium) {
  const std::string name = temp.Write("r.kvr", Section(other, "POS=1\r\n"));
  const std::string before = temp.Read("r.kvr");
  PlayFrom(60);
  dialogs.WillPickFile(name);
  resume.SaveResumeFile(true, false);
  EXPECT_EQ(temp.Read("r.kvr"), before);
  // Nor into what is no resume file at all, even when nothing is current.
  settings.CurrentFile.clear();
  for (const bool clear : {false, true}) {
    dialogs.WillPickFile(film);
    resume.SaveResumeFile(true, clear);
  }
  EXPECT_EQ(temp.Read("Film.avi"), "film");
  for (const MessageBoxRequest& box : dialogs.Boxes()) {
    EXPECT_EQ(box.text, "Resume File does not contain this media!");
  }
  EXPECT_EQ(dialogs.Boxes().size(), 3U);
  EXPECT_EQ(session.ResumeEndPosition, kNoPosition);
}

TEST_F(ResumeFilesTest, NothingIsSavedOnceTheProgramEnds) {
  PlayFrom(10);
  dialogs.WhileOpen([this] { session.Unloading = true; });
  for (const bool end : {false, true}) {
    dialogs.WillPickFile(temp.Path("r.kvr"));
    resume.SaveResumeFile(end, false);
  }
  EXPECT_EQ(temp.Entries(), 2);
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(ResumeFilesTest, NamesOfAnyBytesAndNumbersOfAnySizeSurvive) {
  const std::string long_name = std::string(200, 'a') + ".avi";
  std::string deep;
  for (int i = 0; i < 15; ++i) deep += std::string(200, static_cast<char>('a' + i)) + "/";
  const struct {
    std::string name;
    double position;
  } rows[] = {
      {" blanks .avi ", 1.0 / 3.0}, {"\xff\xfe bytes.avi", 1e-5}, {"\"quoted\"", 99.99999999999999},
      {"; [x] = y.avi", 0.1},       {deep + long_name, 12.0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string path = MakeMedium(row.name);
    movie.DS_OpenFile(path, 0, 0, 320, 200, 7);
    movie.DS_SetPosition(row.position);
    settings.CurrentFile = path;
    const std::string name = temp.Path("r.kvr");
    std::filesystem::remove(name);
    dialogs.WillPickFile(name);
    resume.SaveResumeFile(false, false);
    movie.DS_Remove();
    session.ResumePosition = kNoPosition;
    bool from_playlist = false;
    resume.OpenResumeFile(name, from_playlist, false);
    EXPECT_EQ(log.back(), "open " + path);
    EXPECT_EQ(session.ResumePosition, row.position);
    EXPECT_EQ(movie.DS_GetPosition(), row.position);
  }
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(ResumeFilesTest, GoesToThePositionAndPlaysAsTheSettingsSay) {
  enum { kHalted, kPlaying, kPaused };
  const struct {
    const char* position;
    bool auto_play;
    bool auto_start;
    bool same_medium;
    double seconds;
    int state;
  } rows[] = {{"POS=30", false, false, false, 30.0, kHalted},
              {"POS=30", true, true, false, 30.0, kPlaying},
              {"POS=30", false, true, false, 30.0, kPaused},
              {"POS=-4", true, true, false, 0.0, kHalted},
              {"POS=30", true, false, true, 30.0, kPlaying}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.position << row.auto_play << row.auto_start);
    movie.DS_OpenFile(row.same_medium ? film : other, 0, 0, 320, 200, 7);
    settings.CurrentFile = other;
    settings.AutoPlayResume = FromBool(row.auto_play);
    settings.AutoStart = FromBool(row.auto_start);
    log.clear();
    EXPECT_FALSE(Open(Section(film, row.position)));
    EXPECT_THAT(log, ElementsAre(row.same_medium ? "name" : "open " + film));
    EXPECT_EQ(settings.CurrentFile, film);
    EXPECT_EQ(movie.DS_GetPosition(), row.seconds);
    EXPECT_EQ(Playing(), row.state == kPlaying);
    EXPECT_EQ(movie.DS_IsPaused(), row.state == kPaused);
  }
}

TEST_F(ResumeFilesTest, LooksForTheMediumInTheListButNeverAtItsLastEntry) {
  const struct {
    const char* flag;
    bool last;
    bool found;
  } rows[] = {{"-1", false, true},
              {"-1", true, false},
              {"0", false, false},
              {"True", false, true},
              {"maybe", false, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.flag);
    list.Clear();
    if (row.last) list.add(other);
    list.add(text.Upper(film));
    if (!row.last) list.add(other);
    settings.PlaylistIndex = 1;
    movie.DS_Remove();
    log.clear();
    EXPECT_EQ(Open(Section(film, std::string("PLID=77\nPLFile=") + row.flag)), row.found);
    EXPECT_EQ(settings.PlaylistIndex, row.found ? 77 : 1);
    EXPECT_THAT(log, ElementsAre((row.found ? "open as entry " : "open ") + film));
  }
}

TEST_F(ResumeFilesTest, TellsAMediumThatIsGone) {
  PlayFrom(10);
  Open(Section("/no/such.avi", "POS=3\nENDPOS=9"));
  EXPECT_EQ(dialogs.LastText(), "File \"/no/such.avi\" does not exist!");
  EXPECT_EQ(session.ResumePosition, 3.0);
  EXPECT_EQ(session.ResumeEndPosition, 9.0);
  for (const std::string& content : {std::string(), std::string(1 << 20, '\0'), temp.Path()}) {
    Open(content);
    EXPECT_EQ(dialogs.LastText(), "File \"\" does not exist!");
  }
  EXPECT_THAT(log, IsEmpty());
  EXPECT_EQ(movie.DS_CurFile(), film);
  factory.media["http://h/x"] = {};
  Open(Section("http://h/x", ""));
  EXPECT_THAT(log, ElementsAre("open http://h/x"));
}

TEST_F(ResumeFilesTest, NeverLeadsRoundAndRound) {
  Open(Section(temp.Path("r.kvr"), "POS=3"));
  EXPECT_EQ(dialogs.LastText(), "Error opening \"" + temp.Path("r.kvr") + "\"");
  EXPECT_EQ(session.ResumePosition, kNoPosition);
  EXPECT_THAT(log, IsEmpty());

  // A playlist whose first entry leads back here.
  const std::string playlist = temp.Write("list.m3u", "");
  after_open = [this] {
    bool from_playlist = true;
    resume.OpenResumeFile(temp.Path("r.kvr"), from_playlist, false);
  };
  Open(Section(playlist, ""));
  EXPECT_EQ(dialogs.Boxes().size(), 2U);
  EXPECT_LT(log.size(), 10U);
}

TEST_F(ResumeFilesTest, LeavesAnotherMediumAlone) {
  const std::string content = Section(film, "POS=30");
  settings.AutoPlayResume = FromBool(true);
  const auto open_other = [this] {
    movie.DS_OpenFile(other, 0, 0, 320, 200, 7);
    settings.CurrentFile = other;
  };
  // The open is refused; a newer one overtakes it; the program ends; all this once more in the pump
  // that follows the seek.
  open_other();
  refuse_open = true;
  Open(content);
  refuse_open = false;
  EXPECT_EQ(movie.DS_GetPosition(), 0.0);
  after_open = open_other;
  Open(content);
  EXPECT_EQ(movie.DS_GetPosition(), 0.0);
  after_open = [&] { pump.Post(open_other); };
  Open(content);
  EXPECT_EQ(settings.CurrentFile, other);
  EXPECT_FALSE(movie.DS_IsRunning());
  after_open = [this] { pump.Post([this] { session.Unloading = true; }); };
  Open(content);
  EXPECT_EQ(movie.DS_GetPosition(), 30.0);
  EXPECT_FALSE(movie.DS_IsRunning());
}

}  // namespace
}  // namespace kv
