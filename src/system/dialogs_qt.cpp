#include "system/dialogs_qt.h"

#include "system/file_descriptor.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/text_platform_qt.h"

#include <QApplication>
#include <QColor>
#include <QColorDialog>
#include <QFile>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QMimeDatabase>
#include <QSettings>
#include <QStringList>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <type_traits>
#include <utility>

namespace kv {
namespace {

// In the order of BoxIcon and of BoxButtons.
constexpr std::array<QMessageBox::Icon, 5> kIcons = {QMessageBox::NoIcon, QMessageBox::Information,
                                                     QMessageBox::Warning, QMessageBox::Critical,
                                                     QMessageBox::Question};

struct ButtonSet {
  QMessageBox::StandardButtons buttons;
  QMessageBox::StandardButton first;   // what Enter presses
  QMessageBox::StandardButton escape;  // what closing the box presses
};

constexpr std::array<ButtonSet, 4> kButtons = {{
    {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok},
    {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::Cancel},
    {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No},
    {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes,
     QMessageBox::Cancel},
}};

BoxAnswer AnswerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return BoxAnswer::kYes;
    case QMessageBox::No:
      return BoxAnswer::kNo;
    case QMessageBox::Cancel:
      return BoxAnswer::kCancel;
    default:
      return BoxAnswer::kOk;
  }
}

// "*.mp3" as "*.[mM][pP]3": some desktops' dialogs tell the cases apart.
QString AnyCase(const QString& pattern) {
  QString result;
  for (const QChar c : pattern) {
    if (c.toLower() == c.toUpper()) {
      result += c;
    } else {
      result += QLatin1Char('[') + c.toLower() + c.toUpper() + QLatin1Char(']');
    }
  }
  return result;
}

// "label|patterns|label|patterns" taken apart. A save dialog keeps the patterns plain, since some
// desktops take the extension of a new file from them.
QList<PortalFileGroup> GroupsOf(const QString& filter, bool any_case) {
  const QStringList parts = filter.split(QLatin1Char('|'));
  QList<PortalFileGroup> result;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QStringList patterns;
    for (const QString& pattern : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
      patterns += any_case ? AnyCase(pattern.trimmed()) : pattern.trimmed();
    }
    // "*.*" means every file, with a dot in its name or without.
    patterns.replaceInStrings(QStringLiteral("*.*"), QStringLiteral("*"));
    if (!patterns.isEmpty()) result.append({parts[i], patterns});
  }
  return result;
}

// As the toolkit's list of "label (pattern pattern)".
QStringList NameFilters(const QList<PortalFileGroup>& groups) {
  QStringList result;
  for (const PortalFileGroup& group : groups) {
    result += group.label + QStringLiteral(" (") + group.patterns.join(QLatin1Char(' ')) +
              QLatin1Char(')');
  }
  return result;
}

// Where in `groups` the one is that was shown last, or else 0. Some dialogs tell the whole group
// back and some its label alone.
qsizetype LastGroup(const QStringList& groups, const QString& last) {
  for (qsizetype i = 0; i < groups.size() && !last.isEmpty(); ++i) {
    if (groups[i] == last || groups[i].startsWith(last + QStringLiteral(" ("))) return i;
  }
  return 0;
}

FileDialogResult ResultOf(std::string path) {
  FileDialogResult result;
  result.accepted = !path.empty();
  result.title = path.substr(path.rfind('/') + 1);
  result.file_name = std::move(path);
  return result;
}

// Colours are 0x00BBGGRR; a negative one is no colour and counts as black.
QColor ToQColor(std::int32_t color) {
  const int value = std::max(color, 0);
  return {value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF};
}

std::int32_t FromQColor(const QColor& color) {
  return color.red() | (color.green() << 8) | (color.blue() << 16);
}

QString ToName(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}

std::string FromName(const QString& name) {
  return QFile::encodeName(name).toStdString();
}

// A short question in a narrow box would have its title cut, which says what the question is about.
void MakeRoomForTitle(QMessageBox& box) {
  auto* const grid = qobject_cast<QGridLayout*>(box.layout());
  if (grid == nullptr) return;
  QFont font = box.font();
  font.setBold(true);
  const QFontMetrics metrics(font);
  constexpr int kFrameLines = 8;  // icon and buttons of the frame, in heights of a line
  const int width = metrics.horizontalAdvance(box.windowTitle()) + kFrameLines * metrics.height();
  grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

// The toolkit's dialogs keep the folders that the user has been to in a file of their own, which
// they would make readable by everybody. One that is there keeps its mode.
void KeepHistoryPrivate() {
  const QSettings history(QSettings::UserScope, QStringLiteral("QtProject"));
  const std::string path = FromName(history.fileName());
  if (!CreateFolders(FolderOfPath(path))) return;
  const FileDescriptor made(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
}

// Icons and types by the names of files alone. The toolkit's own open each file to look into it,
// and some, as the kernel's log in "/proc", let whoever reads them wait for ever.
class IconsByName : public QFileIconProvider {
 public:
  using QFileIconProvider::icon;
  QIcon icon(const QFileInfo& file) const override {
    const QIcon plain = QFileIconProvider::icon(file.isDir() ? Folder : File);
    return QIcon::fromTheme(TypeOf(file).iconName(), plain);
  }
  QString type(const QFileInfo& file) const override { return TypeOf(file).comment(); }

 private:
  QMimeType TypeOf(const QFileInfo& file) const {
    return types_.mimeTypeForFile(file, QMimeDatabase::MatchExtension);
  }

  QMimeDatabase types_;
};

// A dialog for one question. While it is open its owner may be destroyed, and takes it along.
template <typename T>
class Modal {
 public:
  explicit Modal(QWidget* owner) {
    if constexpr (!std::is_same_v<T, QMessageBox>) KeepHistoryPrivate();
    dialog_ = new T(owner);
  }
  Modal(const Modal&) = delete;
  Modal& operator=(const Modal&) = delete;
  ~Modal() { delete dialog_.data(); }

  // Only before the dialog is shown, and after it was accepted.
  T* operator->() const { return dialog_.data(); }
  T& operator*() const { return *dialog_; }

  // Shows it. True when the user accepted; a dialog that was destroyed meanwhile is rejected.
  bool Accepted() const { return dialog_->exec() == QDialog::Accepted; }

 private:
  QPointer<T> dialog_;
};

}  // namespace

DialogsQt::DialogsQt(QWidget* owner) : owner_(owner) {}

QWidget* DialogsQt::Owner() const {
  // A question belongs to the window that the user works in, which gets the keyboard back.
  QWidget* const active = QApplication::activeWindow();
  return active != nullptr ? active : owner_.data();
}

BoxAnswer DialogsQt::ShowMessageBox(const MessageBoxRequest& request) {
  const ButtonSet& set = kButtons.at(static_cast<std::size_t>(request.buttons));
  const Modal<QMessageBox> box(Owner());
  box->setIcon(kIcons.at(static_cast<std::size_t>(request.icon)));
  box->setWindowTitle(ToQString(request.title.empty() ? kAppTitle : request.title));
  box->setTextFormat(Qt::PlainText);  // file names are no markup
  box->setText(ToQString(request.text));
  box->setStandardButtons(set.buttons);
  box->setDefaultButton(set.first);
  box->setEscapeButton(set.escape);
  MakeRoomForTitle(*box);
  const int button = box->exec();
  return AnswerOf(
      set.buttons.testFlag(static_cast<QMessageBox::StandardButton>(button)) ? button : set.escape);
}

PortalFileAnswer DialogsQt::AskPortal(const PortalFileQuestion& question) {
  return portal_ ? portal_->Ask(question, Owner()) : PortalFileAnswer{};
}

FileDialogResult DialogsQt::ShowFileDialog(const FileDialogRequest& request) {
  const QString filter = ToQString(request.filter);
  const QList<PortalFileGroup> parts = GroupsOf(filter, !request.save);
  const QStringList groups = NameFilters(parts);
  const qsizetype last = LastGroup(groups, last_group_.value(filter));
  const PortalFileAnswer answer =
      AskPortal({request.save ? PortalFileQuestion::Kind::kSave : PortalFileQuestion::Kind::kOpen,
                 ToQString(request.title), parts, parts.isEmpty() ? QString() : parts[last].label,
                 request.folder, request.file_name});
  if (answer.kind != PortalFileAnswer::Kind::kNone) {
    if (!answer.path.empty()) last_group_.insert(filter, answer.group);
    return ResultOf(answer.path);
  }
  IconsByName icons;
  const Modal<QFileDialog> dialog(Owner());
  dialog->setIconProvider(&icons);
  dialog->setWindowTitle(ToQString(request.title));
  dialog->setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog->setOption(QFileDialog::DontConfirmOverwrite);
  dialog->setOption(QFileDialog::HideNameFilterDetails);
  if (!groups.isEmpty()) {
    dialog->setNameFilters(groups);
    dialog->selectNameFilter(groups[last]);
  }
  if (!request.folder.empty()) dialog->setDirectory(ToName(request.folder));
  if (!request.file_name.empty()) dialog->selectFile(ToName(request.file_name));

  if (!dialog.Accepted() || dialog->selectedFiles().isEmpty()) return {};
  last_group_.insert(filter, dialog->selectedNameFilter());
  return ResultOf(FromName(dialog->selectedFiles().constFirst()));
}

ColorDialogResult DialogsQt::ShowColorDialog(std::int32_t initial, const CustomColors& custom) {
  const int count = std::min(QColorDialog::customCount(), static_cast<int>(custom.size()));
  for (int i = 0; i < count; ++i) {
    QColorDialog::setCustomColor(i, ToQColor(custom.at(static_cast<std::size_t>(i))));
  }
  ColorDialogResult result;
  result.custom = custom;
  const Modal<QColorDialog> dialog(Owner());
  dialog->setCurrentColor(ToQColor(initial));
  if (!dialog.Accepted()) return result;
  result.color = FromQColor(dialog->selectedColor());
  for (int i = 0; i < count; ++i) {
    result.custom.at(static_cast<std::size_t>(i)) = FromQColor(QColorDialog::customColor(i));
  }
  return result;
}

std::string DialogsQt::BrowseDirectorysOnly(const std::string& title, const std::string& start) {
  const PortalFileAnswer answer =
      AskPortal({PortalFileQuestion::Kind::kFolder, ToQString(title), {}, {}, start, {}});
  if (answer.kind != PortalFileAnswer::Kind::kNone) return answer.path;
  IconsByName icons;
  const Modal<QFileDialog> dialog(Owner());
  dialog->setIconProvider(&icons);
  dialog->setWindowTitle(ToQString(title));
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  if (!start.empty()) dialog->setDirectory(ToName(start));
  if (!dialog.Accepted() || dialog->selectedFiles().isEmpty()) return {};
  return FromName(dialog->selectedFiles().constFirst());
}

}  // namespace kv
