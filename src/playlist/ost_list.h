// `OSTList`, the general list behind the playlist: texts with free slots beside each.
//
// Indexes count from 1 to `Count`. Reading outside that range gives an empty value and writing
// there does nothing, and callers rely on it. The playlist is the one list that the program makes;
// it lives as long as the main form, holds at most 9999 entries by the tests of those who add, and
// only its item texts are in use: a path or URL each, as it was given. Interface thread only.
#pragma once

#include "system/text_platform.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kv {

// The most entries that a playlist may have.
inline constexpr int kPlaylistLimit = 9999;

class OSTList {
 public:
  using Picture = std::shared_ptr<const void>;
  // A number, or a text: the number of an item, or else an item to search for.
  using Key = std::variant<int, std::string>;

  // `text` folds case in `Remove`; it must outlive the list.
  explicit OSTList(const TextPlatform& text) : text_(text) {}

  int Count() const;

  void add(std::string Item, std::string ItemData1 = {}, std::string ItemData2 = {},
           std::string ItemData3 = {}, Picture ItemPicture = {});

  const std::string& Item(int index) const;
  void SetItem(int index, std::string value);
  const std::string& ItemData1(int index) const;
  void SetItemData1(int index, std::string value);
  const std::string& ItemData2(int index) const;
  void SetItemData2(int index, std::string value);
  const std::string& ItemData3(int index) const;
  void SetItemData3(int index, std::string value);
  Picture ItemPicture(int index) const;
  void SetItemPicture(int index, Picture value);
  bool ItemMarkDelete(int index) const;
  void SetItemMarkDelete(int index, bool value);

  // Removes one item. A text that reads as a number is that number; any other removes the first
  // item that equals it in any case, and `key` becomes the number of that item. A key that leads
  // nowhere does nothing.
  void Remove(Key& key);
  void Remove(int index);

  void Clear();
  void RemoveAllMarkedForDelete();

  // Exchanges an item with its neighbour: text, data and picture. The mark is not exchanged but
  // goes along, and the neighbour's is lost.
  void MoveItemDown(int index);
  void MoveItemUp(int index);

 private:
  struct Entry {
    std::string item;
    std::string data1;
    std::string data2;
    std::string data3;
    Picture picture;
    bool mark_delete = false;
  };

  Entry* At(int index) const;
  const std::string& Text(int index, std::string Entry::*slot) const;
  void SetText(int index, std::string Entry::*slot, std::string value);
  int Find(const std::string& text) const;

  const TextPlatform& text_;
  // Behind pointers, so that removing one entry of ten thousand moves no text.
  std::vector<std::unique_ptr<Entry>> entries_;
};

}  // namespace kv
