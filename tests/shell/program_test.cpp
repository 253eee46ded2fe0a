// The program itself, started as a user starts it, on a platform without a screen: what it does is
// read from its trace, what it keeps from its settings.
#include "state/settings_file.h"
#include "support/temp_folder.h"

#include <QElapsedTimer>
#include <QProcess>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr int kPatience = 20'000;  // milliseconds, for what normally takes one or two

struct TraceLine {
  double seconds = 0.0;
  std::string event;
  std::string value;
};

// One player with a program folder of its own; starts share it when they share the folder.
class Player {
 public:
  explicit Player(const TempFolder& home) : home_(home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto set = [&environment](const char* name, const std::string& value) {
      environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
    };
    set("QT_QPA_PLATFORM", "offscreen");
    set("KESTRELVIEW_HOME", home.Path());
    set("XDG_RUNTIME_DIR", home.Path("run"));
    set("XDG_CONFIG_HOME", home.Path("config"));
    set("PULSE_SERVER", "unix:" + home.Path("nobody"));
    set("KESTRELVIEW_TRACE", home.Path("trace"));
    process_.setProcessEnvironment(environment);
    process_.setProcessChannelMode(QProcess::ForwardedChannels);
    mkdir(home.Path("run").c_str(), S_IRWXU);
  }
  ~Player() {
    process_.kill();
    process_.waitForFinished();
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  void Start(const std::string& medium = {}) {
    QStringList arguments;
    if (!medium.empty()) arguments << QString::fromStdString(medium);
    process_.start(QStringLiteral(KV_PROGRAM), arguments);
  }

  std::vector<TraceLine> Lines() const {
    std::vector<TraceLine> lines;
    std::istringstream trace(home_.Read("trace"));
    for (std::string text; std::getline(trace, text);) {
      TraceLine line;
      std::istringstream fields(text);
      fields >> line.seconds >> line.event;
      std::getline(fields >> std::ws, line.value);
      lines.push_back(line);
    }
    return lines;
  }

  // The position told last; -1 before the first.
  double Position() const {
    double position = -1.0;
    for (const TraceLine& line : Lines()) {
      if (line.event == "position") position = std::stod(line.value);
    }
    return position;
  }

  // Stop holds the medium at its start.
  bool Held() const {
    int held = 0;
    for (const TraceLine& line : Lines()) {
      if (line.event == "open") held = 0;
      if (line.event == "position") held = std::stod(line.value) < 0.1 ? held + 1 : 0;
    }
    return held >= 2;
  }

  bool Seen(const std::string& event, const std::string& value = {}) const {
    for (const TraceLine& line : Lines()) {
      if (line.event == event && (value.empty() || line.value == value)) return true;
    }
    return false;
  }

  bool WaitFor(const std::function<bool()>& condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
      if (clock.elapsed() > kPatience) return false;
      process_.waitForFinished(20);
    }
    return true;
  }

  // As the end of a login session does; true when the program left by itself, without a crash.
  bool Terminate() {
    process_.terminate();
    return process_.waitForFinished(kPatience) && process_.exitStatus() == QProcess::NormalExit &&
           process_.exitCode() == 0;
  }

  bool Ended(int milliseconds) {
    return process_.waitForFinished(milliseconds) && process_.exitCode() == 0;
  }

 private:
  const TempFolder& home_;
  QProcess process_;
};

std::string Medium(const char* name) {
  return std::string(KV_MEDIA_FOLDER) + "/" + name;
}

// Full volume, true speed, centred.
Settings Usual() {
  Settings settings;
  settings.Volume = 99;
  settings.PlayRate = 20;
  settings.Balance = 9;
  return settings;
}

void WriteConfig(const TempFolder& home, const Settings& settings) {
  ASSERT_TRUE(WriteSettings(home.Path("config.dat"), settings));
}

// The end of each medium is found and Stop holds it at its start.
TEST(Program, PlaysEachKindOfMediumToItsEndAndStops) {
  const std::vector<const char*> media = {"tone.mp3", "tone.flac", "film25.mkv", "film1.mkv",
                                          "film_short.mkv"};
  std::vector<std::unique_ptr<TempFolder>> homes;
  std::vector<std::unique_ptr<Player>> players;
  for (const char* name : media) {
    homes.push_back(std::make_unique<TempFolder>());
    WriteConfig(*homes.back(), Usual());
    players.push_back(std::make_unique<Player>(*homes.back()));
    players.back()->Start(Medium(name));
  }
  for (std::size_t i = 0; i < media.size(); ++i) {
    SCOPED_TRACE(media[i]);
    Player& player = *players[i];
    ASSERT_TRUE(player.WaitFor([&] { return player.Seen("open", Medium(media[i])); }));
    ASSERT_TRUE(player.WaitFor([&] { return player.Held(); })) << "never stopped";
    double furthest = 0.0;
    for (const TraceLine& line : player.Lines()) {
      if (line.event == "position") furthest = std::max(furthest, std::stod(line.value));
    }
    EXPECT_TRUE(furthest > 0.5 || media[i] == std::string("film_short.mkv"));
    EXPECT_TRUE(player.Terminate());
  }
}

TEST(Program, ComesBackWhereItWasLeft) {
  const TempFolder home;
  Settings settings = Usual();
  settings.AutoLoadLast = settings.StorePos = settings.InitLastFrame = FromBool(true);
  settings.Volume = 42;
  WriteConfig(home, settings);
  {
    Player player(home);
    player.Start(Medium("film1.mkv"));
    ASSERT_TRUE(player.WaitFor([&] { return player.Position() > 1.0; }));
    ASSERT_TRUE(player.Terminate());
  }
  Settings saved;
  ASSERT_TRUE(ReadSettings(home.Path("config.dat"), saved));
  EXPECT_EQ(saved.CurrentFile, Medium("film1.mkv"));
  EXPECT_EQ(saved.RecentFiles[0], Medium("film1.mkv"));
  EXPECT_EQ(saved.Volume, 42);
  EXPECT_GT(saved.LastPosition, 1.0);
  home.Write("trace", "");
  Player again(home);
  again.Start();
  ASSERT_TRUE(again.WaitFor([&] { return again.Position() >= 0.0; }));
  EXPECT_NEAR(again.Position(), saved.LastPosition, 1.0);
  EXPECT_TRUE(again.Terminate());
}

// What is opened, in order, up to the moment when nothing more comes.
std::vector<std::string> Opened(const Player& player) {
  std::vector<std::string> names;
  for (const TraceLine& line : player.Lines()) {
    const std::string name = line.value.substr(line.value.rfind('/') + 1);
    if (line.event == "open" && (names.empty() || names.back() != name)) names.push_back(name);
  }
  return names;
}

TEST(Program, RunsThroughAListAsItsModesSay) {
  struct Case {
    bool auto_next;
    int repeat_mode;
    std::vector<std::string> opened;
  };
  const std::vector<Case> cases = {
      {false, 0, {"film_short.mkv"}},
      {true, 0, {"film_short.mkv", "tone.wav"}},
      {true, 2, {"film_short.mkv", "tone.wav", "film_short.mkv", "tone.wav"}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.auto_next ? each.repeat_mode : -1);
    const TempFolder home;
    Settings settings = Usual();
    settings.AutoPlayPlaylist = FromBool(true);
    settings.AutoNext = FromBool(each.auto_next);
    settings.RepeatMode = each.repeat_mode;
    WriteConfig(home, settings);
    home.Write("list.m3u", Medium("film_short.mkv") + "\r\n" + Medium("tone.wav") + "\r\n");
    Player player(home);
    player.Start(home.Path("list.m3u"));
    EXPECT_TRUE(player.WaitFor([&] { return Opened(player) == each.opened; }));
    if (each.repeat_mode == 0) {
      EXPECT_TRUE(player.WaitFor([&] { return player.Held(); }));
      EXPECT_EQ(Opened(player), each.opened);
    }
    ASSERT_TRUE(player.Terminate());
    Settings saved;
    ASSERT_TRUE(ReadSettings(home.Path("config.dat"), saved));
    EXPECT_EQ(saved.PlaylistFile, home.Path("list.m3u"));
    EXPECT_EQ(saved.PlaylistIndex, each.opened.back() == "tone.wav" ? 2 : 1);
  }
}

TEST(Program, ReturnsToTheSectionOfAResumeFileAndStaysInIt) {
  const TempFolder home;
  Settings settings = Usual();
  settings.AutoPlayResume = FromBool(true);
  WriteConfig(home, settings);
  home.Write("spot.kvr", "[RESUME_FILE]\r\nPath=" + Medium("film1.mkv") +
                             "\r\nPOS=2,5\r\nPLFile=0\r\nPLID=0\r\nENDPOS=3.5\r\n");
  Player player(home);
  player.Start(home.Path("spot.kvr"));
  ASSERT_TRUE(player.WaitFor([&] { return player.Seen("open", Medium("film1.mkv")); }));
  std::vector<double> positions;
  ASSERT_TRUE(player.WaitFor([&] {
    positions.clear();
    for (const TraceLine& line : player.Lines()) {
      if (line.event == "position") positions.push_back(std::stod(line.value));
    }
    return positions.size() >= 5;
  }));
  for (const double position : positions) {
    EXPECT_GT(position, 2.3);
    EXPECT_LT(position, 3.9);
  }
  EXPECT_TRUE(player.Terminate());
}

TEST(Program, HandsOverToTheOneThatRuns) {
  const TempFolder home;
  WriteConfig(home, Usual());
  Player first(home);
  first.Start();
  ASSERT_TRUE(first.WaitFor([&] { return first.Seen("window"); }));
  Player second(home);
  second.Start(Medium("tone.mp3"));
  ASSERT_TRUE(second.Ended(kPatience)) << "a second start with a path leaves at once";
  EXPECT_TRUE(first.WaitFor([&] { return first.Seen("open", Medium("tone.mp3")); }));
  // A start that took its path from the command line has heard it already.
  EXPECT_TRUE(first.Terminate());
  Player third(home);
  third.Start(Medium("tone.flac"));
  ASSERT_TRUE(third.WaitFor([&] { return third.Seen("open", Medium("tone.flac")); }));
  Player fourth(home);
  fourth.Start(Medium("tone.wav"));
  ASSERT_TRUE(fourth.Ended(kPatience));
  EXPECT_FALSE(third.Seen("open", Medium("tone.wav")));
  EXPECT_TRUE(third.Terminate());
}

// The box stands before the program's own loop has begun.
TEST(Program, LeavesABoxOfItsStartWhenTheSessionEnds) {
  const TempFolder home;
  WriteConfig(home, Usual());
  Player player(home);
  player.Start(home.Path("nothing.mkv"));
  ASSERT_TRUE(player.WaitFor([&] { return player.Seen("start"); }));
  EXPECT_FALSE(player.Ended(300));
  EXPECT_TRUE(player.Terminate());
  EXPECT_FALSE(player.Seen("window"));
}

TEST(Program, ComesUpWhateverItsSettingsHold) {
  const std::vector<std::pair<const char*, std::string>> contents = {
      {"nothing", ""},
      {"all bits", std::string(700, '\xff')},
      {"lengths past the end", std::string(2, '\0') + std::string(5, '\x7f')},
  };
  for (const auto& [name, bytes] : contents) {
    SCOPED_TRACE(name);
    const TempFolder home;
    home.Write("config.dat", bytes);
    // No welcome sound, which would be waited for.
    home.Write("welcome_to_ostrand.wav", "");
    Player player(home);
    player.Start();
    EXPECT_TRUE(player.WaitFor([&] { return player.Seen("window"); }));
    EXPECT_TRUE(player.Terminate());
  }
  const TempFolder home;
  home.MakeFolder("config.dat");
  Player player(home);
  player.Start();
  EXPECT_TRUE(player.WaitFor([&] { return player.Seen("window"); }));
  EXPECT_TRUE(player.Terminate());
}

}  // namespace
}  // namespace kv
