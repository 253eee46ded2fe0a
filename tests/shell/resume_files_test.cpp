// Resume files on the disk, the engine over a fake graph.
#include "shell/resume_files.h"

#include "shell/shell_test.h"

#include <sys/stat.h>

namespace kv {
namespace {

struct ResumeFilesTest : testing::Test, MovieWorld, ResumeFilesHost {
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

  // Under the name that the user picks: the position, or the end, which `clear` takes out.
  void Save(const std::string& name, bool end = false, bool clear = false) {
    dialogs.WillPickFile(name);
    resume.SaveResumeFile(end, clear);
  }
  bool Open(std::string_view content) {
    temp.Write("r.kvr", content);
    bool from_playlist = false;
    resume.OpenResumeFile(temp.Path("r.kvr"), from_playlist, true);
    return from_playlist;
  }
  // Where the session resumes, and where that ends.
  std::pair<double, double> Resumes() const {
    return {session.ResumePosition, session.ResumeEndPosition};
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
  Save(temp.Path("new.txt"));
  EXPECT_EQ(temp.Read("new.txt.kvr"),
            "[RESUME_FILE]\r\nPath=" + film + "\r\nPOS=34.5\r\nPLFile=-1\r\nPLID=12\r\n");
  EXPECT_EQ(Resumes(), std::pair(34.5, 0.0));
  EXPECT_EQ(settings.LastOpenFolder, temp.Path());
  EXPECT_THAT(log, ElementsAre("mark"));
  EXPECT_TRUE(Playing());
  const FileDialogRequest& request = dialogs.FileRequests().front();
  EXPECT_EQ(request.folder + request.file_name, "/start/Film.avi");
  movie.DS_Pause();
  Save(temp.Path("PAUSED.KVR"));
  EXPECT_NE(temp.Read("PAUSED.KVR"), "");
  EXPECT_TRUE(movie.DS_IsPaused());
}

TEST_F(ResumeFilesTest, AsksBeforeItReplacesAndReplacesAsAWhole) {
  const std::string name = temp.Write("r.kvr", "[RESUME_FILE]\nENDPOS=50\n[mine]\na=b\n");
  chmod(name.c_str(), 0400);
  PlayFrom(10);
  dialogs.WillAnswer(BoxAnswer::kCancel);
  Save(name);
  EXPECT_THAT(temp.Read("r.kvr"), HasSubstr("mine"));
  EXPECT_EQ(session.ResumePosition, kNoPosition);
  EXPECT_TRUE(movie.DS_IsPaused());
  EXPECT_EQ(dialogs.LastText(), "The file \"" + name + "\" already exist!\n\nOverwrite ?");

  dialogs.WillAnswer(BoxAnswer::kOk);
  Save(name);
  EXPECT_EQ(temp.Read("r.kvr"),
            "[RESUME_FILE]\r\nPath=" + film + "\r\nPOS=10\r\nPLFile=0\r\nPLID=0\r\n");
  struct stat status {};
  ASSERT_EQ(stat(name.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(ResumeFilesTest, ASaveThatFailsTellsItAndPlaysOn) {
  const std::string name = temp.MakeFolder("folder.kvr");
  PlayFrom(10);
  Save(name);
  EXPECT_EQ(dialogs.LastText(), "Error saving \"" + name + "\"");

  settings.CurrentFile = "/m/two\nlines.avi";  // a name that no line can hold
  const std::string old = temp.Write("old.kvr", "old");
  dialogs.WillAnswer(BoxAnswer::kOk);
  Save(old);
  EXPECT_EQ(dialogs.LastText(), "Error saving \"" + old + "\"");
  EXPECT_EQ(temp.Read("old.kvr"), "old");
  EXPECT_EQ(session.ResumePosition, kNoPosition);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_FALSE(movie.DS_IsPaused());

  // Nothing is saved nor told once the program ends.
  dialogs.WhileOpen([this] { session.Unloading = true; });
  for (const bool end : {false, true}) Save(temp.Path("late.kvr"), end);
  EXPECT_EQ(temp.Read("late.kvr"), "");
  EXPECT_EQ(dialogs.Boxes().size(), 3U);
}

TEST_F(ResumeFilesTest, SetsAndClearsTheEndInAFileThatTheUserHasEdited) {
  const std::string edited =
      "; mine\n[other]\nENDPOS=7\n[resume_file]\nPATH = " + text.Upper(film) + " \nnote=x\npos=3\n";
  const std::string name = temp.Write("r.kvr", edited);
  PlayFrom(60.25);
  dialogs.WillPickFile(temp.Path("missing.kvr"));
  Save(name, true);
  EXPECT_EQ(dialogs.LastText(), "The specified file does not exist!");
  EXPECT_EQ(temp.Read("r.kvr"), edited + "ENDPOS=60.25\n");
  EXPECT_EQ(Resumes(), std::pair(kNoPosition, 60.25));
  EXPECT_TRUE(movie.DS_IsPaused());

  settings.CurrentFile = other;  // the file may be any when the end is taken out
  Save(name, true, true);
  EXPECT_EQ(temp.Read("r.kvr"), edited + "ENDPOS=-1\n");
  EXPECT_EQ(Resumes(), std::pair(kNoPosition, 60.25));
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(ResumeFilesTest, NoEndIsWrittenIntoAFileOfAnotherMedium) {
  const std::string content = Section(other, "POS=1\r\n");
  PlayFrom(60);
  Save(temp.Write("r.kvr", content), true);
  EXPECT_EQ(temp.Read("r.kvr"), content);
  // Nor into what is no resume file at all, even when nothing is current.
  settings.CurrentFile.clear();
  for (const bool clear : {false, true}) Save(film, true, clear);
  EXPECT_EQ(temp.Read("Film.avi"), "film");
  EXPECT_EQ(dialogs.LastText(), "Resume File does not contain this media!");
  EXPECT_EQ(dialogs.Boxes().size(), 3U);
  EXPECT_EQ(session.ResumeEndPosition, kNoPosition);
}

TEST_F(ResumeFilesTest, NamesOfAnyBytesAndNumbersOfAnySizeSurvive) {
  std::string deep;
  for (int i = 0; i < 16; ++i) deep += std::string(200, static_cast<char>('a' + i)) + "/";
  const std::pair<std::string, double> media[] = {{" blanks .avi ", 1.0 / 3.0},
                                                  {"\xff\xfe bytes.avi", 1e-5},
                                                  {"\"quoted\"", 99.99999999999999},
                                                  {"; [x] = y.avi", 0.1},
                                                  {deep + "a.avi", 12.0}};
  for (const auto& [name, position] : media) {
    SCOPED_TRACE(name);
    settings.CurrentFile = MakeMedium(name);
    movie.DS_OpenFile(settings.CurrentFile, 0, 0, 320, 200, 7);
    movie.DS_SetPosition(position);
    std::filesystem::remove(temp.Path("r.kvr"));
    Save(temp.Path("r.kvr"));
    movie.DS_Remove();
    session.ResumePosition = kNoPosition;
    Open(temp.Read("r.kvr"));
    EXPECT_EQ(log.back(), "open " + temp.Path(name));
    EXPECT_EQ(session.ResumePosition, position);
    EXPECT_EQ(movie.DS_GetPosition(), position);
  }
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(ResumeFilesTest, GoesToThePositionAndPlaysAsTheSettingsSay) {
  enum { kHalted, kPlaying, kPaused };
  const struct {
    const char* position;
    bool auto_play, auto_start, same_medium;
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
    bool last, found;
  } rows[] = {{"-1", false, true}, {"-1", true, false}, {"0", false, false}, {"True", false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.flag);
    list.Clear();
    for (const bool ours : {!row.last, row.last}) list.add(ours ? text.Upper(film) : other);
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
  EXPECT_EQ(Resumes(), std::pair(3.0, 9.0));
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
  const struct {
    const char* what;
    bool refused;
    std::function<void()> meanwhile;
    double position;
  } rows[] = {
      {"the open is refused", true, [] {}, 0},
      {"a newer one overtakes it", false, open_other, 0},
      {"and in the pump that follows the seek", false, [&] { pump.Post(open_other); }, 0},
      {"the program ends there", false, [this] { pump.Post([this] { session.Unloading = true; }); },
       30},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    open_other();
    refuse_open = row.refused;
    after_open = row.meanwhile;
    Open(content);
    EXPECT_EQ(movie.DS_GetPosition(), row.position);
    EXPECT_FALSE(movie.DS_IsRunning());
  }
}

}  // namespace
}  // namespace kv
