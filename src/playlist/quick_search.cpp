#include "playlist/quick_search.h"

#include "playlist/fold_text.h"
#include "playlist/wildcard.h"
#include "system/utf8.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdio>

namespace kv {
namespace {

// "007 : "; numbers above 999 take the digits that they need.
std::string LineStart(int number) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%03d : ", number);
  return text.data();
}

// The number that a line begins with; 0 when there is none.
int NumberOfLine(std::string_view line) {
  int number = 0;
  const std::string_view digits = line.substr(0, line.find_first_not_of("0123456789"));
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

int CharacterCount(std::string_view text) {
  int count = 0;
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) ++count;
  return count;
}

}  // namespace

QuickSearch::QuickSearch(const OSTList& list, ListRows& rows, Settings& settings, Session& session,
                         const TextPlatform& text, QuickSearchHost& host)
    : list_(list), rows_(rows), settings_(settings), session_(session), text_(text), host_(host) {}

QuickSearch::Start QuickSearch::Form_Load() {
  session_.QuickSearchOpen = true;
  Start start{.text = settings_.QuickSearchText};
  // Between the two stars, so that typing makes a pattern that matches anywhere in a text.
  start.caret = start.text == "**" ? 1 : CharacterCount(start.text);
  Text1_Change(start.text);
  // The first key is not to wait for what can be done while the window comes up.
  if (session_.PlaylistWindowLoaded) {
    for (int row = 1; row <= rows_.RowCount(); ++row) rows_.Folded(row);
  }
  return start;
}

void QuickSearch::Form_Unload(const std::string& text) {
  session_.QuickSearchOpen = false;
  settings_.QuickSearchText = text;
  lines_ = {};
  folded_ = {};
  rows_.DropFolded();
}

void QuickSearch::Text1_Change(const std::string& text) {
  if (text.empty()) {
    lines_.clear();
  } else {
    Check(text);
  }
}

void QuickSearch::Check(const std::string& pattern) {
  lines_.clear();
  const std::string lower = LowerText(pattern, text_);
  if (session_.PlaylistWindowLoaded) {
    CheckRows(lower);
  } else {
    CheckPaths(lower);
  }
}

const std::string& QuickSearch::FoldedPath(int index) {
  const std::string& item = list_.Item(index);
  FoldedItem& folded = folded_[static_cast<std::size_t>(index) - 1];
  if (folded.item != item) {
    folded.item = item;
    folded.lower = LowerText(item, text_);
  }
  return folded.lower;
}

void QuickSearch::CheckPaths(const std::string& lower) {
  const LikePattern pattern(lower);
  folded_.resize(static_cast<std::size_t>(list_.Count()));
  for (int i = 1; i <= list_.Count(); ++i) {
    if (pattern.Matches(FoldedPath(i))) lines_.push_back(LineStart(i) + list_.Item(i));
  }
}

void QuickSearch::CheckRows(const std::string& lower) {
  const LikePattern pattern(lower);
  const auto text_of = [this](int row, PlaylistColumn column) {
    return rows_.SubItem(row, static_cast<int>(column));
  };
  for (int row = 1; row <= rows_.RowCount(); ++row) {
    const CellTexts& cells = rows_.Folded(row);
    bool found = false;
    for (int column = 1; column <= kLastSubItem && !found; ++column) {
      found = pattern.Matches(cells.Text(column));
    }
    if (!found) continue;
    std::string line = LineStart(row);
    line += text_of(row, PlaylistColumn::kFilename);
    line += " (";
    line += text_of(row, PlaylistColumn::kTitle);
    line += ':';
    line += text_of(row, PlaylistColumn::kTime);
    line += ')';
    lines_.push_back(std::move(line));
  }
}

bool QuickSearch::List1_DblClick(int line) {
  if (line < 0 || static_cast<std::size_t>(line) >= lines_.size()) return false;
  const int number = NumberOfLine(lines_[static_cast<std::size_t>(line)]);
  if (session_.PlaylistWindowLoaded) rows_.SelectOnly(number);
  host_.PlaylistSetNext(number);
  return true;
}

}  // namespace kv
