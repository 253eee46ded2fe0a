#include "system/translation.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(Translation, ValuesGoWhereThePatternWantsThem) {
  // What looks like a place in a value is none.
  EXPECT_EQ(Fill("%2 before %1, %1", "%2", std::string("two")), "two before %2, %2");
  EXPECT_EQ(Fill("50% of %3, %0, 100%", "a", "b"), "50% of %3, %0, 100%");
}

TEST(Translation, SpeaksEnglishUntilACatalogueIsBoundAndGermanThen) {
  const std::string_view in_table = TrLater("Filename");
  EXPECT_STREQ(Tr("Playlist"), "Playlist");
  EXPECT_EQ(Tr(in_table).data(), in_table.data());
  EXPECT_STREQ(TrIn("answer", "No"), "No");
  EXPECT_STREQ(Tr("%1 items in list.", "%1 items in list.", 1), "%1 items in list.");
  EXPECT_EQ(TranslationLanguage(), "");

  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("LANGUAGE", "de", 1);
  BindTranslations(KV_LOCALE_FOLDER);
  EXPECT_STREQ(Tr("Playlist"), "Wiedergabeliste");
  EXPECT_EQ(Tr(in_table), "Dateiname");
  EXPECT_STREQ(Tr("No"), "Nr.");
  EXPECT_STREQ(TrIn("answer", "No"), "Nein");
  EXPECT_STREQ(Tr("%1 items in list.", "%1 items in list.", 1), "%1 Eintrag in der Liste.");
  EXPECT_STREQ(Tr("%1 items in list.", "%1 items in list.", 2), "%1 Einträge in der Liste.");
  EXPECT_STREQ(Tr(""), "");  // and not the head of the catalogue
  EXPECT_STREQ(Tr("No such text"), "No such text");
  EXPECT_EQ(TranslationLanguage(), "de");
  EXPECT_EQ(std::string(std::localeconv()->decimal_point), ".");
  std::setlocale(LC_MESSAGES, "C");
}

}  // namespace
}  // namespace kv
