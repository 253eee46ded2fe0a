// The program's entry: hands its path to a player that runs, or becomes that player.

#include "desktop/bus_probe.h"
#include "desktop/remote_player_qt.h"
#include "desktop/start_option.h"
#include "engine/mpv_engine.h"
#include "shell/command_line.h"
#include "shell/exit_guard.h"
#include "shell/frm_main.h"
#include "shell/hand_over_channel.h"
#include "shell/link_server.h"
#include "shell/start_up.h"
#include "shell/termination.h"
#include "shell/trace.h"
#include "state/dialog_look_qt.h"
#include "system/app_folder.h"
#include "system/message_pump_qt.h"
#include "system/priority.h"
#include "system/registry.h"
#include "system/text_platform_qt.h"
#include "system/timers_qt.h"
#include "system/translation_qt.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QPixmapCache>
#include <QSessionManager>
#include <QTranslator>

#include <array>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// A player that does not answer for this long is taken for dead, and this start becomes the player.
constexpr int kHandOverMilliseconds = 2000;
// What the engine is given to end in; a stuck sound or network library is left behind.
constexpr int kShutdownMilliseconds = 800;
// Larger buffers go back to the system when they are freed. The engine has a thread for each of its
// jobs and a medium's packets are ten megabytes; left to itself the C library keeps as much for
// every thread that ever held them, half the player's memory after some hundred media.
constexpr int kLargeBuffer = 1 << 20;
// What the toolkit keeps of drawn pictures, in kilobytes. It never forgets the key of one that was
// kept, and a window that is opened again is drawn with new keys. Who paints often keeps his own.
constexpr int kPictureCache = 0;

std::string WorkingFolder() {
  std::array<char, PATH_MAX> folder{};
  return getcwd(folder.data(), folder.size()) != nullptr ? folder.data() : "";
}

int RunOption(int argc, char** argv, const kv::StartOption& option,
              const kv::ProgramFolder& folder) {
  using Kind = kv::StartOption::Kind;
  kv::BindTranslations(folder.LocaleFolder());
  if (option.kind == Kind::kTellUsage) {
    std::fputs(kv::UsageText().c_str(), stdout);
  } else if (option.kind == Kind::kTellVersion) {
    std::puts("kestrelview " KV_VERSION);
  } else {
    kv::LeaveSilentBus();
    const QCoreApplication application(argc, argv);
    if (!kv::CallRunningPlayer(option.method)) {
      std::fprintf(stderr, "kestrelview: %s\n", kv::Tr("No player is running."));
      return EXIT_FAILURE;
    }
  }
  return EXIT_SUCCESS;
}

bool HandOverToRunningPlayer(const kv::RawCommandLine& arguments, const std::string& socket) {
  const std::string file = kv::CommandFileOf(kv::ParseDebugSwitch(arguments).CommandLine);
  if (file.empty()) return false;
  return kv::SendHandOver(socket, '"' + file + '"', kHandOverMilliseconds) !=
         kv::HandOverAnswer::kNobody;
}

int RunPlayer(int argc, char** argv, const kv::RawCommandLine& arguments,
              const kv::ProgramFolder& folder, const std::string& socket) {
  mallopt(M_MMAP_THRESHOLD, kLargeBuffer);
  kv::Trace trace;
  kv::LeaveSilentBus();
  if (kv::MayUseHardwareVideo()) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
  } else {
    // Without OpenGL in the picture's way its libraries need not be loaded, half the time of a
    // start.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
  }
  QApplication application(argc, argv);
  QPixmapCache::setCacheLimit(kPictureCache);
  // Every window, box and dialog looks the same and takes the colours of the scheme; the styles of
  // some desktops do not.
  QApplication::setStyle(new kv::DialogStyle);
  // The engine reads and writes numbers in the C locale's form; texts for the user ask QLocale.
  std::setlocale(LC_NUMERIC, "C");
  kv::BindTranslations(folder.LocaleFolder());
  // The toolkit's own texts speak the same language or, without a catalogue of theirs, English.
  QTranslator toolkit_texts;
  if (const std::string language = kv::TranslationLanguage();
      !language.empty() && toolkit_texts.load(QStringLiteral("qtbase_") + kv::ToQString(language),
                                              QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&toolkit_texts);
  }
  QCoreApplication::setApplicationName(QStringLiteral("kestrelview"));
  QGuiApplication::setApplicationDisplayName(QString());
  QGuiApplication::setDesktopFileName(QStringLiteral("kestrelview"));
  QGuiApplication::setQuitOnLastWindowClosed(false);

  kv::Registry registry(folder.AppFolder() + "registry.ini");
  kv::StartUp start_up(
      registry, [](int priority_class) { return kv::SetProcessPriorityClass(0, priority_class); });
  start_up.Main(arguments);

  kv::MessagePumpQt pump;
  kv::TimerSourceQt time;
  kv::TextPlatformQt text;
  bool ended = false;
  {
    kv::MpvEngine engine(pump, kv::ChooseVideoPath());
    {
      kv::frmMain form({engine, pump, time, text, folder, start_up, trace});
      kv::Termination termination([&form] { form.EndSession(); });
      trace.Write("start");  // from here on a signal ends it in good order
      const kv::ExitGuard exit_guard([&form] { form.SaveAtOnce(); });
      QObject::connect(&application, &QGuiApplication::commitDataRequest, &form,
                       [&form](QSessionManager& session) {
                         session.setRestartHint(QSessionManager::RestartNever);
                         form.EndSession();
                       });
      kv::LinkServer server(
          [&form](const std::string& request) { return form.Form_LinkExecute(request); });
      int link_error = 0;
      server.Listen(socket, link_error);
      form.Form_Load();
      if (link_error != 0 && !form.Ended()) form.Form_LinkError(link_error);
      if (!form.Ended()) QApplication::exec();
    }
    ended = engine.Shutdown(kShutdownMilliseconds);
    if (!ended) {
      // Everything is saved; what is still stuck in a library must not be torn down under its feet.
      std::fflush(nullptr);
      std::_Exit(EXIT_SUCCESS);
    }
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  const kv::ProgramFolder folder(kv::AppFolderSources::OfThisProcess());
  if (const kv::StartOption* const option = kv::StartOptionOf(words)) {
    return RunOption(argc, argv, *option, folder);
  }
  const kv::RawCommandLine arguments = kv::JoinArguments(words, WorkingFolder());
  const std::string socket = kv::HandOverSocketPath(folder.AppFolder());
  if (HandOverToRunningPlayer(arguments, socket)) return EXIT_SUCCESS;
  return RunPlayer(argc, argv, arguments, folder, socket);
}
