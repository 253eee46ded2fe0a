// Texts for the user in the user's language.
//
// The English text is the key and the fall-back: where no catalogue is bound or it lacks a text,
// the English one comes back as it stands. GNU gettext does the look-up, so that rules that know no
// toolkit can call it. What is stored, compared or sent stays English; a text is translated where
// it is shown. Any thread, once bound.
#pragma once

#include <string>

namespace kv {

// Takes the language of the environment (LANGUAGE, LC_ALL, LC_MESSAGES, LANG) and the catalogues in
// `locale_folder` ("<folder>/<language>/LC_MESSAGES/kestrelview.mo"). Called once, early; numbers
// keep the C locale, which the engine needs.
void BindTranslations(const std::string& locale_folder);

// The text in the user's language. The result lives as long as the program.
const char* Tr(const char* english);

// The form of the text that goes with `count` of something.
const char* Tr(const char* one, const char* many, unsigned long count);

// Marks a text of a table for the catalogue; it is translated by Tr() when it is shown.
constexpr const char* TrLater(const char* english) {
  return english;
}

}  // namespace kv
