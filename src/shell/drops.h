// What is dropped on the main window: on the picture, and equally on the displays below it.
//
// A text is an address to open; one file is opened or, where the user prefers it, put on the list;
// several go to the list. Owned by `frmMain`; interface thread only.
#pragma once

#include "playlist/list_adding.h"
#include "shell/media_opener.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// The formats that a drop came in. What is absent was not offered.
struct DropData {
  std::optional<std::string> text;                // an address or path
  std::optional<std::vector<std::string>> files;  // local paths, byte for byte
};

// Reads a drop from what desktops offer; null for what is not there. Local files are files,
// although most desktops offer them as text, too. Of several addresses the first one counts; a
// "file:" address in a text becomes its path.
DropData ReadDropData(const std::string_view* uri_list, const std::string_view* text);

class DropsHost {
 public:
  virtual ~DropsHost() = default;
  virtual void OpenFile(const std::string& path, OpenArguments arguments) = 0;
  // Brings the rows and the count of `frmPlaylist` up to date, if it is loaded.
  virtual void RefreshPlaylist() = 0;
};

class Drops {
 public:
  // All must outlive this object.
  Drops(DropsHost& host, ListAdding& adding, const Settings& settings, const Session& session,
        Dialogs& dialogs);

  // Takes what was dropped. Pumps, and lasts as long as opening or adding does: to be called when
  // the drop itself is over, so that the program it came from does not wait.
  void Render_OLEDragDrop(const DropData& Data);

 private:
  void TakeFile(const std::string& file);
  void TakeFiles(const std::vector<std::string>& files);

  DropsHost& host_;
  ListAdding& adding_;
  const Settings& settings_;
  const Session& session_;
  Dialogs& dialogs_;
};

}  // namespace kv
