// The program itself, started as a user starts it, on a platform without a screen: what it does is
// read from its trace, what it keeps from its settings.
#include "state/settings_file.h"
#include "support/temp_folder.h"

#include <QElapsedTimer>
#include <QProcess>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <list>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr int kPatience = 20'000;  // milliseconds, for what normally takes one or two

struct TraceLine {
  std::string event, value;
};

// One player with a program folder of its own; starts share it when they share the folder.
class Player {
 public:
  explicit Player(const TempFolder& home, const std::string& medium = {}) : home_(home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const std::pair<const char*, std::string> variables[] = {
        {"QT_QPA_PLATFORM", "offscreen"},
        {"KESTRELVIEW_HOME", home.Path()},
        {"XDG_RUNTIME_DIR", home.Path("run")},
        {"XDG_CONFIG_HOME", home.Path("config")},
        {"PULSE_SERVER", "unix:" + home.Path("nobody")},
        {"KESTRELVIEW_TRACE", home.Path("trace")},
    };
    for (const auto& [name, value] : variables) {
      environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
    }
    process_.setProcessEnvironment(environment);
    process_.setProcessChannelMode(QProcess::ForwardedChannels);
    mkdir(home.Path("run").c_str(), S_IRWXU);
    QStringList arguments;
    if (!medium.empty()) arguments << QString::fromStdString(medium);
    process_.start(QStringLiteral(KV_PROGRAM), arguments);
  }
  ~Player() {
    process_.kill();
    process_.waitForFinished();
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  std::vector<TraceLine> Lines() const {
    std::vector<TraceLine> lines;
    std::istringstream trace(home_.Read("trace"));
    for (std::string text, seconds; std::getline(trace, text);) {
      std::istringstream fields(text);
      TraceLine& line = lines.emplace_back();
      std::getline(fields >> seconds >> line.event >> std::ws, line.value);
    }
    return lines;
  }

  // Those told since the last medium was opened.
  std::vector<double> Positions() const {
    std::vector<double> positions;
    for (const TraceLine& line : Lines()) {
      if (line.event == "open") positions.clear();
      if (line.event == "position") positions.push_back(std::stod(line.value));
    }
    return positions;
  }

  // Stop holds the medium at its start.
  bool Held() const {
    const std::vector<double> told = Positions();
    return told.size() >= 2 && told[told.size() - 2] < 0.1 && told.back() < 0.1;
  }

  bool Seen(const std::string& event, const std::string& value = {}) const {
    const std::vector<TraceLine> lines = Lines();
    return std::any_of(lines.begin(), lines.end(), [&](const TraceLine& line) {
      return line.event == event && (value.empty() || line.value == value);
    });
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
  bool WaitToSee(const std::string& event, const std::string& value = {}) {
    return WaitFor([&] { return Seen(event, value); });
  }

  // As the end of a login session does; true when the program left by itself, without a crash.
  bool Terminate() {
    process_.terminate();
    return Ended(kPatience) && process_.exitStatus() == QProcess::NormalExit;
  }

  bool Ended(int milliseconds) {
    return process_.waitForFinished(milliseconds) && process_.exitCode() == 0;
  }

 private:
  const TempFolder& home_;
  QProcess process_;
};

std::string Medium(const std::string& name) {
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

Settings ReadConfig(const TempFolder& home) {
  Settings settings;
  EXPECT_TRUE(ReadSettings(home.Path("config.dat"), settings));
  return settings;
}

// The end of each medium is found and Stop holds it at its start.
TEST(Program, PlaysEachKindOfMediumToItsEndAndStops) {
  const std::vector<std::string> names = {"tone.mp3", "tone.flac", "film25.mkv", "film1.mkv",
                                          "film_short.mkv"};
  std::list<TempFolder> homes(names.size());
  std::list<Player> players;
  auto home = homes.begin();
  for (const std::string& name : names) {
    WriteConfig(*home, Usual());
    players.emplace_back(*home++, Medium(name));
  }
  auto name = names.begin();
  for (Player& player : players) {
    SCOPED_TRACE(*name);
    ASSERT_TRUE(player.WaitToSee("open", Medium(*name)));
    ASSERT_TRUE(player.WaitFor([&] { return player.Held(); })) << "never stopped";
    const std::vector<double> told = player.Positions();
    EXPECT_TRUE(*std::max_element(told.begin(), told.end()) > 0.5 || *name == "film_short.mkv");
    EXPECT_TRUE(player.Terminate());
    ++name;
  }
}

TEST(Program, ComesBackWhereItWasLeft) {
  const TempFolder home;
  Settings settings = Usual();
  settings.AutoLoadLast = settings.StorePos = settings.InitLastFrame = FromBool(true);
  settings.Volume = 42;
  WriteConfig(home, settings);
  {
    Player player(home, Medium("film1.mkv"));
    ASSERT_TRUE(player.WaitFor([&] {
      const std::vector<double> told = player.Positions();
      return !told.empty() && told.back() > 1.0;
    }));
    ASSERT_TRUE(player.Terminate());
  }
  const Settings saved = ReadConfig(home);
  EXPECT_EQ(saved.RecentFiles[0], Medium("film1.mkv"));
  EXPECT_EQ(saved.Volume, 42);
  EXPECT_GT(saved.LastPosition, 1.0);
  home.Write("trace", "");
  Player again(home);
  ASSERT_TRUE(again.WaitFor([&] { return !again.Positions().empty(); }));
  EXPECT_NEAR(again.Positions().back(), saved.LastPosition, 1.0);
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
  const struct {
    bool auto_next;
    int repeat_mode;
    std::vector<std::string> opened;
  } cases[] = {
      {false, 0, {"film_short.mkv"}},
      {true, 0, {"film_short.mkv", "tone.wav"}},
      {true, 2, {"film_short.mkv", "tone.wav", "film_short.mkv", "tone.wav"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.auto_next ? each.repeat_mode : -1);
    const TempFolder home;
    Settings settings = Usual();
    settings.AutoPlayPlaylist = FromBool(true);
    settings.AutoNext = FromBool(each.auto_next);
    settings.RepeatMode = each.repeat_mode;
    WriteConfig(home, settings);
    home.Write("list.m3u", Medium("film_short.mkv") + "\r\n" + Medium("tone.wav") + "\r\n");
    Player player(home, home.Path("list.m3u"));
    EXPECT_TRUE(player.WaitFor([&] { return Opened(player) == each.opened; }));
    if (each.repeat_mode == 0) {
      EXPECT_TRUE(player.WaitFor([&] { return player.Held(); }));
      EXPECT_EQ(Opened(player), each.opened);
    }
    ASSERT_TRUE(player.Terminate());
    EXPECT_EQ(ReadConfig(home).PlaylistFile, home.Path("list.m3u"));
    EXPECT_EQ(ReadConfig(home).PlaylistIndex, each.opened.back() == "tone.wav" ? 2 : 1);
  }
}

TEST(Program, ReturnsToTheSectionOfAResumeFileAndStaysInIt) {
  const TempFolder home;
  Settings settings = Usual();
  settings.AutoPlayResume = FromBool(true);
  WriteConfig(home, settings);
  home.Write("spot.kvr", "[RESUME_FILE]\r\nPath=" + Medium("film1.mkv") +
                             "\r\nPOS=2,5\r\nPLFile=0\r\nPLID=0\r\nENDPOS=3.5\r\n");
  Player player(home, home.Path("spot.kvr"));
  ASSERT_TRUE(player.WaitToSee("open", Medium("film1.mkv")));
  ASSERT_TRUE(player.WaitFor([&] { return player.Positions().size() >= 5; }));
  for (const double position : player.Positions()) {
    EXPECT_GT(position, 2.3);
    EXPECT_LT(position, 3.9);
  }
  EXPECT_TRUE(player.Terminate());
}

TEST(Program, HandsOverToTheOneThatRuns) {
  const TempFolder home;
  WriteConfig(home, Usual());
  Player first(home);
  ASSERT_TRUE(first.WaitToSee("window"));
  Player second(home, Medium("tone.mp3"));
  ASSERT_TRUE(second.Ended(kPatience)) << "a second start with a path leaves at once";
  EXPECT_TRUE(first.WaitToSee("open", Medium("tone.mp3")));
  EXPECT_TRUE(first.Terminate());
  // A start that took its path from the command line has heard it already.
  Player third(home, Medium("tone.flac"));
  ASSERT_TRUE(third.WaitToSee("open", Medium("tone.flac")));
  Player fourth(home, Medium("tone.wav"));
  ASSERT_TRUE(fourth.Ended(kPatience));
  EXPECT_FALSE(third.Seen("open", Medium("tone.wav")));
  EXPECT_TRUE(third.Terminate());
}

// The box stands before the program's own loop has begun.
TEST(Program, LeavesABoxOfItsStartWhenTheSessionEnds) {
  const TempFolder home;
  WriteConfig(home, Usual());
  Player player(home, home.Path("nothing.mkv"));
  ASSERT_TRUE(player.WaitToSee("start"));
  EXPECT_FALSE(player.Ended(300));
  EXPECT_TRUE(player.Terminate());
  EXPECT_FALSE(player.Seen("window"));
}

TEST(Program, ComesUpWhateverItsSettingsHold) {
  const std::pair<const char*, std::string> contents[] = {
      {"a folder", ""},
      {"all bits", std::string(700, '\xff')},
      {"lengths past the end", std::string(2, '\0') + std::string(5, '\x7f')},
  };
  for (const auto& [name, bytes] : contents) {
    SCOPED_TRACE(name);
    const TempFolder home;
    const bool folder = &name == &contents[0].first;
    folder ? home.MakeFolder("config.dat") : home.Write("config.dat", bytes);
    home.Write("welcome_to_ostrand.wav", "");  // no welcome sound, which would be waited for
    Player player(home);
    EXPECT_TRUE(player.WaitToSee("window"));
    EXPECT_TRUE(player.Terminate());
  }
}

}  // namespace
}  // namespace kv
