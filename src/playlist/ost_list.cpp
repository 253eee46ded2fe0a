#include "playlist/ost_list.h"

#include "system/ascii_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace kv {
namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The number that a text reads as: blanks around it, a sign, decimals and an exponent are taken.
std::optional<double> NumberOf(std::string_view text) {
  text = TrimBlanks(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  // Words such as "inf" are texts here.
  if (text.empty() || text.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
    return {};
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end != text.data() + text.size()) return {};
  if (error == std::errc::result_out_of_range) return 0.0;  // no item's number
  return error == std::errc() ? std::optional(number) : std::nullopt;
}

// The item that a number stands for, halves to the even one; 0 for a number that is no item's.
int IndexOf(double number) {
  constexpr double kBeyondAnyList = 2e9;
  const double rounded = std::nearbyint(number);
  return rounded >= 1.0 && rounded < kBeyondAnyList ? static_cast<int>(rounded) : 0;
}

}  // namespace

OSTList::Entry* OSTList::At(int index) const {
  return index < 1 || index > Count() ? nullptr
                                      : entries_[static_cast<std::size_t>(index) - 1].get();
}

const std::string& OSTList::Text(int index, std::string Entry::*slot) const {
  static const std::string kNothing;
  const Entry* entry = At(index);
  return entry == nullptr ? kNothing : entry->*slot;
}

void OSTList::SetText(int index, std::string Entry::*slot, std::string value) {
  if (Entry* entry = At(index)) entry->*slot = std::move(value);
}

int OSTList::Count() const {
  return static_cast<int>(entries_.size());
}

void OSTList::add(std::string Item, std::string ItemData1, std::string ItemData2,
                  std::string ItemData3, Picture ItemPicture) {
  entries_.push_back(
      std::make_unique<Entry>(Entry{std::move(Item), std::move(ItemData1), std::move(ItemData2),
                                    std::move(ItemData3), std::move(ItemPicture), false}));
}

const std::string& OSTList::Item(int index) const {
  return Text(index, &Entry::item);
}
void OSTList::SetItem(int index, std::string value) {
  SetText(index, &Entry::item, std::move(value));
}
const std::string& OSTList::ItemData1(int index) const {
  return Text(index, &Entry::data1);
}
void OSTList::SetItemData1(int index, std::string value) {
  SetText(index, &Entry::data1, std::move(value));
}
const std::string& OSTList::ItemData2(int index) const {
  return Text(index, &Entry::data2);
}
void OSTList::SetItemData2(int index, std::string value) {
  SetText(index, &Entry::data2, std::move(value));
}
const std::string& OSTList::ItemData3(int index) const {
  return Text(index, &Entry::data3);
}
void OSTList::SetItemData3(int index, std::string value) {
  SetText(index, &Entry::data3, std::move(value));
}

OSTList::Picture OSTList::ItemPicture(int index) const {
  const Entry* entry = At(index);
  return entry == nullptr ? Picture() : entry->picture;
}

void OSTList::SetItemPicture(int index, Picture value) {
  if (Entry* entry = At(index)) entry->picture = std::move(value);
}

bool OSTList::ItemMarkDelete(int index) const {
  const Entry* entry = At(index);
  return entry != nullptr && entry->mark_delete;
}

void OSTList::SetItemMarkDelete(int index, bool value) {
  if (Entry* entry = At(index)) entry->mark_delete = value;
}

int OSTList::Find(const std::string& text) const {
  const std::string wanted = text_.Lower(text);
  const auto equal = [&](const std::unique_ptr<Entry>& entry) {
    // Nearly all items are ASCII, which needs no platform to fold.
    return IsAscii(entry->item) ? EqualsIgnoringCase(entry->item, wanted)
                                : text_.Lower(entry->item) == wanted;
  };
  const auto found = std::find_if(entries_.begin(), entries_.end(), equal);
  return found == entries_.end() ? 0 : static_cast<int>(found - entries_.begin()) + 1;
}

void OSTList::Remove(Key& key) {
  if (const auto* text = std::get_if<std::string>(&key)) {
    if (const std::optional<double> number = NumberOf(*text)) {
      Remove(IndexOf(*number));
      return;
    }
    const int found = Find(*text);
    if (found == 0) return;
    key = found;
  }
  Remove(std::get<int>(key));
}

void OSTList::Remove(int index) {
  if (At(index) != nullptr) entries_.erase(entries_.begin() + (index - 1));
}

void OSTList::Clear() {
  entries_.clear();
}

void OSTList::RemoveAllMarkedForDelete() {
  std::erase_if(entries_, [](const std::unique_ptr<Entry>& entry) { return entry->mark_delete; });
}

void OSTList::MoveItemDown(int index) {
  if (index < 1 || index >= Count()) return;
  const auto at = static_cast<std::size_t>(index);
  std::swap(entries_[at - 1], entries_[at]);
  entries_[at - 1]->mark_delete = false;
}

void OSTList::MoveItemUp(int index) {
  if (index < 2 || index > Count()) return;
  const auto at = static_cast<std::size_t>(index);
  std::swap(entries_[at - 1], entries_[at - 2]);
  entries_[at - 1]->mark_delete = false;
}

}  // namespace kv
