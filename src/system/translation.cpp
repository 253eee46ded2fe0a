#include "system/translation.h"

#include <clocale>
#include <cstddef>
#include <libintl.h>

namespace kv {

namespace {
constexpr char kDomain[] = "kestrelview";
}

void BindTranslations(const std::string& locale_folder) {
  std::setlocale(LC_MESSAGES, "");
  bindtextdomain(kDomain, locale_folder.c_str());
  bind_textdomain_codeset(kDomain, "UTF-8");
}

std::string TranslationLanguage() {
  // The head of a catalogue is the translation of the empty text.
  const std::string_view head = dgettext(kDomain, "");
  constexpr std::string_view kField = "\nLanguage: ";
  const std::size_t field = head.find(kField);
  if (field == head.npos) return {};
  const std::size_t begin = field + kField.size();
  return std::string(head.substr(begin, head.find('\n', begin) - begin));
}

const char* Tr(const char* english) {
  if (*english == '\0') return english;  // the catalogue's own head stands under the empty text
  return dgettext(kDomain, english);
}

const char* TrIn(const char* context, const char* english) {
  const std::string key = std::string(context) + '\004' + english;
  const char* const text = dgettext(kDomain, key.c_str());
  return text == key.c_str() ? english : text;
}

std::string_view Tr(std::string_view english) {
  const std::string key(english);
  const char* const text = Tr(key.c_str());
  return text == key.c_str() ? english : std::string_view(text);
}

const char* Tr(const char* one, const char* many, unsigned long count) {
  return dngettext(kDomain, one, many, count);
}

std::string FillIn(std::string_view pattern, std::initializer_list<std::string_view> values) {
  std::string result;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char next = at + 1 < pattern.size() ? pattern[at + 1] : '\0';
    const auto number = static_cast<std::size_t>(next - '1');
    if (pattern[at] == '%' && next >= '1' && next <= '9' && number < values.size()) {
      result += values.begin()[number];
      ++at;
    } else {
      result += pattern[at];
    }
  }
  return result;
}

}  // namespace kv
