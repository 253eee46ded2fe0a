#include "system/language_name_qt.h"

#include "system/text_platform_qt.h"
#include "system/translation.h"

#include <QLocale>

#include <string>

namespace kv {

std::string LanguageName(std::string_view code) {
  const QString text = ToQString(code).replace(QLatin1Char('_'), QLatin1Char('-'));
  const QLocale::Language language = QLocale::codeToLanguage(text.section(QLatin1Char('-'), 0, 0));
  if (language == QLocale::AnyLanguage || language == QLocale::C) return {};
  std::string name = Tr(QLocale::languageToString(language).toUtf8().constData());
  const QString region = text.section(QLatin1Char('-'), -1).toUpper();
  const QLocale::Territory territory = QLocale::codeToTerritory(region);
  if (!text.contains(QLatin1Char('-')) || territory == QLocale::AnyTerritory) return name;
  return name + " (" + FromQString(QLocale::territoryToString(territory)) + ")";
}

}  // namespace kv
