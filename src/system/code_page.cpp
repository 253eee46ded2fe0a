#include "system/code_page.h"

#include "system/translation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <iconv.h>

namespace kv {
namespace {

// The pages of Windows by language, then those without one that lists are still found in.
constexpr std::array<CodePage, 21> kCodePages = {{
    {"Windows-1252", TrLater("Western European"), ""},
    {"ISO-8859-15", TrLater("Western European"), ""},
    {"Windows-1250", TrLater("Central European"), " bs cs hr hu pl ro sk sl sq sr@latin "},
    {"Windows-1251", TrLater("Cyrillic"), " be bg kk ky mk mn ru sr tg tt uk "},
    {"Windows-1253", TrLater("Greek"), " el "},
    {"Windows-1254", TrLater("Turkish"), " az tr uz "},
    {"Windows-1255", TrLater("Hebrew"), " he iw yi "},
    {"Windows-1256", TrLater("Arabic"), " ar fa ps ug ur "},
    {"Windows-1257", TrLater("Baltic"), " et lt lv "},
    {"Windows-1258", TrLater("Vietnamese"), " vi "},
    {"Windows-874", TrLater("Thai"), " th "},
    {"CP932", TrLater("Japanese"), " ja "},
    {"CP949", TrLater("Korean"), " ko "},
    {"CP950", TrLater("Traditional Chinese"), " zh_TW zh_HK zh_MO "},
    {"GB18030", TrLater("Simplified Chinese"), " zh "},
    {"ISO-8859-2", TrLater("Central European"), ""},
    {"KOI8-R", TrLater("Cyrillic"), ""},
    {"CP850", TrLater("Western European"), ""},
    {"CP852", TrLater("Central European"), ""},
    {"CP866", TrLater("Cyrillic"), ""},
    {"Macintosh", TrLater("Western European"), ""},
}};

bool IsFor(const CodePage& page, const std::string& language) {
  return std::string_view(page.languages).find(' ' + language + ' ') != std::string_view::npos;
}

const CodePage* PageOf(std::string_view locale) {
  const std::size_t modifier = std::min(locale.find('@'), locale.size());
  const std::string_view place = locale.substr(0, std::min(locale.find('.'), modifier));
  const std::string language(place.substr(0, place.find('_')));
  // The more special one first.
  for (const std::string& name :
       {std::string(place), language + std::string(locale.substr(modifier)), language}) {
    const auto* const page =
        std::find_if(kCodePages.begin(), kCodePages.end(),
                     [&](const CodePage& each) { return !name.empty() && IsFor(each, name); });
    if (page != kCodePages.end()) return page;
  }
  return kCodePages.data();
}

// What iconv_open answers when it cannot.
bool IsOpen(const void* descriptor) {
  return reinterpret_cast<std::intptr_t>(descriptor) != -1;
}

}  // namespace

std::vector<const CodePage*> CodePagesFor(std::string_view locale) {
  std::vector<const CodePage*> pages = {PageOf(locale)};
  for (const CodePage& page : kCodePages) {
    if (&page != pages.front()) pages.push_back(&page);
  }
  return pages;
}

std::string UserLocale() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

Utf8Decoder::Utf8Decoder(const std::string& encoding)
    : iconv_(iconv_open("UTF-8", encoding.c_str())) {}

Utf8Decoder::~Utf8Decoder() {
  if (IsOpen(iconv_)) iconv_close(iconv_);
}

std::optional<std::string> Utf8Decoder::Decode(std::string_view bytes) const {
  if (!IsOpen(iconv_)) return {};
  iconv(iconv_, nullptr, nullptr, nullptr, nullptr);  // forgets a text that broke off
  std::string text;
  std::array<char, 4096> block{};
  char* from = const_cast<char*>(bytes.data());  // which iconv does not change
  std::size_t left = bytes.size();
  while (left > 0) {
    char* to = block.data();
    std::size_t room = block.size();
    const std::size_t result = iconv(iconv_, &from, &left, &to, &room);
    if (result == static_cast<std::size_t>(-1) && errno != E2BIG) return {};
    text.append(block.data(), block.size() - room);
  }
  // A last letter may still be waiting for its accent.
  char* to = block.data();
  std::size_t room = block.size();
  if (iconv(iconv_, nullptr, nullptr, &to, &room) == static_cast<std::size_t>(-1)) return {};
  text.append(block.data(), block.size() - room);
  return text;
}

}  // namespace kv
