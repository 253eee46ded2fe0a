// `StdPictureClass`, a cache of pictures by key, and the icons that the desktop has for files.
//
// Indexes count from 1 in the order of adding; 0 means none. Owned by whoever shows the pictures;
// interface thread only.
#pragma once

#include <QIcon>

#include <string>
#include <string_view>
#include <vector>

namespace kv {

class StdPictureClass {
 public:
  // Keeps a picture under `key`, with a text of the caller's beside it, and answers its index. A
  // key that is there already gets the new picture and text in its old place. Keys ignore the case
  // of ASCII letters.
  int AddPic(const QIcon& picture, std::string_view key, std::string extra_data = {});

  // The picture of a key or an index; a null icon when there is none.
  QIcon Picture(std::string_view key) const { return Picture(GetExtraIndex(key)); }
  QIcon Picture(int index) const;

  // The text of an index; empty when there is none.
  std::string ExtraData(int index) const;

  // The index of a key.
  int GetExtraIndex(std::string_view key) const;

  // The first index with this text, whose case counts.
  int FindIndexFromExtraData(std::string_view extra_data) const;

  int Count() const { return static_cast<int>(entries_.size()); }
  void Clear() { entries_.clear(); }

  // The icon in a file: a picture of any format, or the theme's icon of a desktop entry. With an
  // `index` above 0 that picture of the file. A null icon when there is none.
  static QIcon GetIconFromFile(const std::string& path, int index = 0);

  // The icon that the desktop shows for files with this extension, with its dot or without. A null
  // icon when its theme has none.
  static QIcon GetIconOfExtension(std::string_view extension);

 private:
  struct Entry {
    std::string key;  // in lower case
    std::string extra_data;
    QIcon picture;
  };

  const Entry* At(int index) const;

  std::vector<Entry> entries_;
};

}  // namespace kv
