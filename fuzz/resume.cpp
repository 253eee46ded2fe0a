// Resume files, opened and saved by a player over an engine that only counts.
#include "quiet_dialogs.h"
#include "shell/resume_files.h"
#include "support.h"
#include "support/fake_graph.h"
#include "support/fake_pump.h"
#include "support/fake_text_platform.h"

#include <cmath>
#include <cstdio>

namespace kv::fuzz {
namespace {

struct Player : ResumeFilesHost {
  void OpenFile(const std::string& path, bool /*from_playlist*/) override {
    movie.DS_OpenFile(path, 0, 0, 320, 200, 7);
    settings.CurrentFile = path;
  }
  void UpdateFileDisp(const std::string& /*text*/) override {}
  void ShowResumeMark(bool /*visible*/) override {}

  VirtualTime time;
  FakePump pump{&time};
  FakeTextPlatform text;
  FakeGraphFactory factory{time, pump};
  clsDShowControl movie{factory, pump};
  OSTList list{text};
  Settings settings;
  Session session;
  QuietDialogs dialogs;
  ResumeFiles resume{*this, {movie, settings, session, list, dialogs, pump, text}};
};

}  // namespace

void Try(std::string_view input) {
  static const Folder folder;
  static const std::string film = folder.Write("film.avi", "film");
  // A path in a seed cannot know the folder: "$" at its start stands for the film.
  std::string text(input);
  if (const std::size_t at = text.find("=$"); at != std::string::npos)
    text.replace(at + 1, 1, film);
  const std::string file = folder.Write("a.kvr", text);

  Player player;
  player.factory.media[film] = {.duration = 100.0};
  for (const char* item : {"/other.avi", film.c_str(), "/last.avi"}) player.list.add(item);
  player.settings.AutoPlayResume = FromBool(input.size() % 2 == 0);
  bool from_playlist = false;
  player.resume.OpenResumeFile(file, from_playlist, true);
  const Session& session = player.session;
  Require(std::isfinite(session.ResumePosition) && std::isfinite(session.ResumeEndPosition),
          "positions are numbers");
  if (player.movie.DS_IsOpen()) {
    const double position = player.movie.DS_GetPosition();
    Require(position >= 0 && position <= 100.0, "a position lies in the medium");
    const std::string medium = player.settings.CurrentFile;

    player.dialogs.file = folder.Path() + "new.kvr";
    folder.Write("new.kvr", "");
    std::remove(player.dialogs.file.c_str());
    player.resume.SaveResumeFile(false, false);
    if (HasControl(medium)) return;  // no line of a file can hold it
    const double saved = session.ResumePosition;
    bool again = false;
    player.resume.OpenResumeFile(player.dialogs.file, again, true);
    Require(session.ResumePosition == saved, "a position that was saved is read");
    Require(player.settings.CurrentFile == medium, "a medium that was saved is opened");
  }
  // The end position goes into the file as it is, whatever else it holds.
  player.dialogs.file = file;
  player.resume.SaveResumeFile(true, input.size() % 3 == 0);
}

}  // namespace kv::fuzz
