#include "system/text_platform_qt.h"

#include "system/utf8.h"

#include <QChar>
#include <QLocale>

namespace kv {
namespace {

// `text` with `map` applied to each character; a stray byte is no letter and stays.
template <class Map>
std::string Mapped(std::string_view text, Map map) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (const auto byte = static_cast<unsigned char>(text[at]); byte < 0x80) {
      result += static_cast<char>(map(byte));
      ++at;
      continue;
    }
    const Utf8Char next = DecodeUtf8(text, at);
    if (next.valid) {
      AppendUtf8(result, map(next.code));
    } else {
      result += text[at];
    }
    at += next.size;
  }
  return result;
}

}  // namespace

std::string TextPlatformQt::Lower(std::string_view text) const {
  return Mapped(text, [](char32_t code) { return QChar::toLower(code); });
}

std::string TextPlatformQt::Upper(std::string_view text) const {
  return Mapped(text, [](char32_t code) { return QChar::toUpper(code); });
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
