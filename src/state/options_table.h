// The table of the options dialog: which control edits which field of the settings, where it stands
// and how it reads.
//
// Fields go by their names in the settings' field list. The dialog builds itself from this table,
// fills itself from the settings and stores into them by it. Any thread.
#pragma once

#include "state/settings.h"
#include "system/translation.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kv {

enum class OptionKind : std::uint8_t {
  kCheck,      // on: true
  kOffCheck,   // on: false
  kChoice,     // one of several round buttons; chosen, the field takes `value`
  kIndexList,  // a list whose index the field holds
  kValueList,  // a list of numbers of which the field holds one
  kSlider,     // stores at once, see kRefreshTop
};

enum class OptionPage : std::uint8_t {
  kPlayback,
  kPicture,
  kWindow,
  kPlaylist,
  kMeter,
  kFileTypes
};

struct OptionPageRow {
  OptionPage page;
  std::string_view title;
};

inline constexpr std::array<OptionPageRow, 6> kOptionPages{{
    {OptionPage::kPlayback, TrLater("Play&back")},
    {OptionPage::kPicture, TrLater("&Picture")},
    {OptionPage::kWindow, TrLater("&Window")},
    {OptionPage::kPlaylist, TrLater("P&laylist")},
    {OptionPage::kMeter, TrLater("Level &meter")},
    {OptionPage::kFileTypes, TrLater("&File types")},
}};

struct OptionRow {
  OptionPage page;
  std::string_view group;  // heading above it; rows of one group follow each other
  OptionKind kind;
  std::string_view control;
  std::string_view caption;
  std::string_view field;
  int value = 0;                     // kChoice
  std::span<const int> values = {};  // the two kinds of lists; shown in `unit`
  std::string_view unit = {};
  bool first_if_none = false;        // a list without the field's value shows its first line
  std::string_view depends_on = {};  // control that must be on for this one to mean anything
};

// The slider's right end. A rate of 1 stands there, and 25 exactly in the middle.
inline constexpr int kRefreshTop = 48;

std::span<const OptionRow> OptionRows();

// The field as a number; nothing when no numeric field has the name.
std::optional<std::int32_t> OptionValue(const Settings& settings, std::string_view field);
bool SetOptionValue(Settings& settings, std::string_view field, std::int32_t value);

// Which line of the row's list shows `value`; -1 for none.
int OptionLine(const OptionRow& row, std::int32_t value);

// The field's value for a line of the list; `value` as it was where no line is chosen.
std::int32_t OptionOfLine(const OptionRow& row, int line, std::int32_t value);

}  // namespace kv
