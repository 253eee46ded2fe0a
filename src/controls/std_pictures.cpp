#include "controls/std_pictures.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/ini_file.h"
#include "system/paths.h"

#include <QBuffer>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPixmap>

#include <algorithm>

namespace kv {
namespace {

// No icon is larger, in pixels and bytes, whatever its file says.
constexpr int kLargestIcon = 1024;
constexpr std::size_t kLargestFile = std::size_t{16} * 1024 * 1024;

// An icon file holds one picture in several sizes.
QIcon IconInFile(const std::string& path, int index) {
  // Read here, since the toolkit does not open names that are not UTF-8.
  std::string bytes;
  if (!ReadWholeFile(path, kLargestFile, bytes)) return {};
  QByteArray content = QByteArray::fromStdString(bytes);
  QBuffer buffer(&content);
  QImageReader reader(&buffer);
  QIcon icon;
  const int end = index > 0 ? index + 1 : std::max(reader.imageCount(), 1);
  for (int i = std::max(index, 0); i < end; ++i) {
    if (i > 0 && !reader.jumpToImage(i)) break;
    const QSize size = reader.size();
    if (size.width() > kLargestIcon || size.height() > kLargestIcon) continue;
    const QImage image = reader.read();
    if (!image.isNull()) icon.addPixmap(QPixmap::fromImage(image));
  }
  return icon;
}

}  // namespace

int StdPictureClass::AddPic(const QIcon& picture, std::string_view key, std::string extra_data) {
  int index = GetExtraIndex(key);
  if (index == 0) {
    entries_.push_back({LowerAscii(key), {}, {}});
    index = Count();
  }
  Entry& entry = entries_[static_cast<std::size_t>(index - 1)];
  entry.extra_data = std::move(extra_data);
  entry.picture = picture;
  return index;
}

const StdPictureClass::Entry* StdPictureClass::At(int index) const {
  if (index < 1 || index > Count()) return nullptr;
  return &entries_[static_cast<std::size_t>(index - 1)];
}

QIcon StdPictureClass::Picture(int index) const {
  const Entry* const entry = At(index);
  return entry != nullptr ? entry->picture : QIcon();
}

std::string StdPictureClass::ExtraData(int index) const {
  const Entry* const entry = At(index);
  return entry != nullptr ? entry->extra_data : std::string();
}

int StdPictureClass::GetExtraIndex(std::string_view key) const {
  const auto at = std::find_if(entries_.begin(), entries_.end(), [key](const Entry& entry) {
    return EqualsIgnoringCase(entry.key, key);
  });
  return at == entries_.end() ? 0 : static_cast<int>(at - entries_.begin()) + 1;
}

int StdPictureClass::FindIndexFromExtraData(std::string_view extra_data) const {
  const auto at = std::find_if(entries_.begin(), entries_.end(), [extra_data](const Entry& entry) {
    return entry.extra_data == extra_data;
  });
  return at == entries_.end() ? 0 : static_cast<int>(at - entries_.begin()) + 1;
}

QIcon StdPictureClass::GetIconFromFile(const std::string& path, int index) {
  if (!EqualsIgnoringCase(GetFileExtension(path, false), "desktop")) {
    return IconInFile(path, index);
  }
  // An entry names a file or an icon of the theme.
  const std::string icon = ReadIniString(path, "Desktop Entry", "Icon", "");
  return icon.starts_with('/') ? IconInFile(icon, index)
                               : QIcon::fromTheme(QString::fromStdString(icon));
}

QIcon StdPictureClass::GetIconOfExtension(std::string_view extension) {
  if (extension.starts_with('.')) extension.remove_prefix(1);
  if (extension.empty()) return {};
  const QString name = QStringLiteral("file.") + QString::fromStdString(std::string(extension));
  const QMimeType type = QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension);
  return QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName()));
}

}  // namespace kv
