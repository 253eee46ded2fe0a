#include "system/translation.h"

#include <clocale>
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

const char* Tr(const char* english) {
  return dgettext(kDomain, english);
}

const char* Tr(const char* one, const char* many, unsigned long count) {
  return dngettext(kDomain, one, many, count);
}

}  // namespace kv
