#include "system/shell_services_qt.h"

#include "system/files.h"
#include "system/paths.h"
#include "system/text_platform_qt.h"
#include "system/translation.h"
#include "system/wave_file.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <optional>
#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

// What the callers have always been told: above 32 is success.
constexpr int kOpened = 42;
constexpr int kNotFound = 2;
constexpr int kDenied = 5;
constexpr int kNoProgram = 31;
constexpr int kCancelled = 1223;

bool Exists(const std::string& path) {
  struct stat status {};
  return path.find('\0') == std::string::npos && lstat(path.c_str(), &status) == 0;
}

QString NativeName(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}

// The toolkit reaches only names that are UTF-8.
bool SurvivesToolkit(const std::string& path) {
  return QFile::encodeName(NativeName(path)).toStdString() == path;
}

// A name that is not UTF-8 goes to the trash under the name that it is shown by.
bool MoveToTrash(const std::string& path) {
  if (SurvivesToolkit(path)) return QFile::moveToTrash(NativeName(path));
  const std::string readable = FolderOfPath(path) + FromQString(ToQString(FileNameOfPath(path)));
  if (!SurvivesToolkit(readable) || !MoveFileApi(path, readable)) return false;
  if (QFile::moveToTrash(NativeName(readable))) return true;
  MoveFileApi(readable, path);
  return false;
}

// A local path as a URL whose bytes are the path's own, UTF-8 or not.
QUrl UrlOfPath(const std::string& path) {
  return QUrl::fromEncoded("file://" + QByteArray::fromStdString(path).toPercentEncoding("/"));
}

bool IsLocal(const std::string& file) {
  return IsNativePath(file) || Exists(file) || QUrl(ToQString(file)).scheme().isEmpty();
}

int StartProgram(const std::string& file, const std::string& parameters,
                 const std::string& folder) {
  const QString program = NativeName(file);
  if (QStandardPaths::findExecutable(program).isEmpty()) return Exists(file) ? kDenied : 0;
  const QStringList arguments = QProcess::splitCommand(ToQString(parameters));
  return QProcess::startDetached(program, arguments, NativeName(folder)) ? kOpened : kDenied;
}

std::optional<WaveSound> LoadSound(const std::string& file) {
  std::string bytes;
  if (!ReadWholeFile(file, kMaxTextFileBytes, bytes)) return {};
  return ReadWave(bytes);
}

}  // namespace

ShellServicesQt::ShellServicesQt(Dialogs& dialogs) : dialogs_(dialogs) {
  qRegisterMetaType<SoundOutcome>();
  QObject::connect(
      &reports_, &SoundReports::Done, &reports_,
      [this](int call, SoundOutcome outcome) { SoundDone(call, outcome); }, Qt::QueuedConnection);
}

int ShellServicesQt::SendToRecycleBin(const std::string& path, bool confirm, bool silent) {
  if (!Exists(path)) return kNotFound;
  const std::string name = FileNameOfPath(path);
  if (confirm) {
    const BoxAnswer answer = dialogs_.ShowMessageBox(
        {Fill(Tr("Are you sure you want to move \"%1\" to the trash?"), name), BoxIcon::kQuestion,
         BoxButtons::kYesNo, ""});
    if (answer != BoxAnswer::kYes) return kCancelled;
  }
  if (MoveToTrash(path)) return 0;
  if (!silent) {
    dialogs_.ShowMessageBox({Fill(Tr("\"%1\" could not be moved to the trash."), name),
                             BoxIcon::kStop, BoxButtons::kOk, ""});
  }
  return kDenied;
}

int ShellServicesQt::ShellOpenDocument(const std::string& file, const std::string& parameters,
                                       const std::string& folder, const std::string& verb) {
  if (!verb.empty() && verb != "open") return kNoProgram;
  if (!parameters.empty()) return StartProgram(file, parameters, folder);
  if (!IsLocal(file)) {
    return QDesktopServices::openUrl(QUrl(ToQString(file))) ? kOpened : kNoProgram;
  }
  std::string path = file;
  if (!IsNativePath(file) && !folder.empty()) path = folder + "/" + file;
  if (!Exists(path)) return 0;
  const QUrl url = IsNativePath(path) ? UrlOfPath(path) : QUrl::fromLocalFile(NativeName(path));
  return QDesktopServices::openUrl(url) ? kOpened : kNoProgram;
}

void ShellServicesQt::PlaySoundEx(const std::string& file, bool wait, bool loop, bool no_stop,
                                  bool no_default) {
  if (file.empty() || (no_stop && player_.Playing())) return;
  std::optional<WaveSound> sound = LoadSound(file);
  const bool beep = !sound && !no_default;

  const int number = ++last_call_;
  calls_[number].beep = beep;
  player_.Start(std::move(sound).value_or(WaveSound()), loop && !wait,
                [this, number](SoundOutcome outcome) { Q_EMIT reports_.Done(number, outcome); });
  if (!wait) return;
  QEventLoop until_done;
  calls_[number].waiting = &until_done;
  const QPointer<SoundReports> alive(&reports_);
  until_done.exec();
  // The loop also ends when the program does, with the sound still playing.
  if (alive.isNull()) return;
  if (const auto call = calls_.find(number); call != calls_.end()) call->second.waiting = nullptr;
}

void ShellServicesQt::SoundDone(int call, SoundOutcome outcome) {
  const auto entry = calls_.extract(call);
  if (entry.empty()) return;
  if (entry.mapped().waiting != nullptr) entry.mapped().waiting->quit();
  if (outcome == SoundOutcome::kNoOutput) {
    dialogs_.ShowMessageBox(
        {Tr("Unable to init SOUND-DECVICE"), BoxIcon::kExclamation, BoxButtons::kOk, ""});
  } else if (outcome == SoundOutcome::kEnded && entry.mapped().beep) {
    QApplication::beep();
  }
}

}  // namespace kv
