#include "state/mime_types_qt.h"

#include "system/text_platform_qt.h"

#include <QFile>
#include <QMimeType>
#include <QProcess>

namespace kv {

std::vector<std::string> MimeTypesQt::TypesOf(const std::string& extension) const {
  std::vector<std::string> names;
  for (const QMimeType& type : database_.mimeTypesForFileName(ToQString("name." + extension))) {
    names.push_back(FromQString(type.name()));
  }
  return names;
}

std::string MimeTypesQt::Comment(const std::string& type) const {
  const QMimeType found = database_.mimeTypeForName(ToQString(type));
  return found.isValid() ? FromQString(found.comment()) : std::string();
}

void MimeTypesQt::Rebuild(const std::string& mime_folder) {
  QProcess::startDetached(QStringLiteral("update-mime-database"),
                          {QFile::decodeName(mime_folder.c_str())});
}

}  // namespace kv
