// Texts for the user in the user's language.
//
// The English text is the key and the fall-back: where no catalogue is bound or it lacks a text,
// the English one comes back as it stands. GNU gettext does the look-up, so that rules that know no
// toolkit can call it. What is stored, compared or sent stays English; a text is translated where
// it is shown. A text with values in it is one text with the places "%1" to "%9", see Fill(), so
// that a translator can put them in another order. Any thread, once bound.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace kv {

// Takes the language of the environment (LANGUAGE, LC_ALL, LC_MESSAGES, LANG) and the catalogues in
// `locale_folder` ("<folder>/<language>/LC_MESSAGES/kestrelview.mo"). Called once, early; numbers
// keep the C locale, which the engine needs.
void BindTranslations(const std::string& locale_folder);

// The language of the catalogue in use, as its head names it ("de", "pt_BR"); empty without one.
std::string TranslationLanguage();

// The text in the user's language. The result lives as long as the program.
const char* Tr(const char* english);

// The same for a text of a table; where there is no other the result is `english` itself.
std::string_view Tr(std::string_view english);

// The text where one English word means two things: `context` tells the translator which.
const char* TrIn(const char* context, const char* english);

// The form of the text that goes with `count` of something.
const char* Tr(const char* one, const char* many, unsigned long count);

// Marks a text of a table for the catalogue; it is translated by Tr() when it is shown.
constexpr const char* TrLater(const char* english) {
  return english;
}

// `pattern` with each "%1" to "%9" replaced by the value of that number. A place without a value
// stays as it is, and so does what looks like a place in a value.
std::string FillIn(std::string_view pattern, std::initializer_list<std::string_view> values);

template <class... Values>
std::string Fill(std::string_view pattern, const Values&... values) {
  return FillIn(pattern, {std::string_view(values)...});
}

}  // namespace kv
