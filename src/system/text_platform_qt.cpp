#include "system/text_platform_qt.h"

#include "system/ascii_text.h"
#include "system/utf8.h"

#include <QChar>
#include <QLocale>

namespace kv {

std::string TextPlatformQt::Lower(std::string_view text) const {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    if (next.valid && next.code >= 0x80) {
      AppendUtf8(result, QChar::toLower(next.code));
    } else {
      result += LowerAscii(text[at]);  // a stray byte is no letter and stays
    }
    at += next.size;
  }
  return result;
}

std::string TextPlatformQt::DecimalSeparator() const {
  return QLocale::system().decimalPoint().toStdString();
}

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQString(const QString& text) {
  return text.toStdString();
}

}  // namespace kv
