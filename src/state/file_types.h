// Which file types open with the player, by the desktop's own means.
//
// A type belongs to the program that stands first for it in the user's "mimeapps.list". Taking a
// type puts the player before the owner that was there, giving it back takes it away again; so the
// old owner returns, and a choice that the user has made elsewhere meanwhile stands. A player that
// is not installed also gets a desktop entry and a description of its resume files in the user's
// own folders, for as long as it has a type. Errors change nothing and are not reported. Interface
// thread only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

inline constexpr std::string_view kDesktopId = "kestrelview.desktop";
inline constexpr std::string_view kResumeType = "application/x-kestrelview-resume";

// What the system knows of MIME types.
class MimeTypes {
 public:
  virtual ~MimeTypes() = default;
  // All types that a name with this extension can have, the likeliest first.
  virtual std::vector<std::string> TypesOf(const std::string& extension) const = 0;
  // What the user reads; empty when it is not known.
  virtual std::string Comment(const std::string& type) const = 0;
  // The system's descriptions of types in `mime_folder` have changed.
  virtual void Rebuild(const std::string& mime_folder) = 0;
};

// One line of the list.
struct FileTypeLine {
  std::vector<std::string> types;       // that are one to the user
  std::vector<std::string> extensions;  // without dot, in the order of the patterns
  std::string comment;
  bool selected = false;  // opens with the player
};

struct FileTypeList {
  std::vector<FileTypeLine> lines;
  std::vector<std::string> unknown;  // extensions that the system has no type for
};

// All folders absolute and with a trailing "/".
struct FileTypePlaces {
  std::string config_home;             // $XDG_CONFIG_HOME
  std::string data_home;               // $XDG_DATA_HOME
  std::vector<std::string> data_dirs;  // $XDG_DATA_DIRS
  std::string program;                 // the executable, absolute
  std::string icon;                    // a picture of the player, absolute; may be missing

  // From the environment and the running executable.
  static FileTypePlaces OfThisProcess(const std::string& icon);
};

class FileTypes {
 public:
  // `mime` must outlive this object.
  FileTypes(MimeTypes& mime, FileTypePlaces places);

  // The lines for `patterns` ("*.mkv;*.mp4"), in that order. Extensions of one type share a line.
  FileTypeList Lines(std::string_view patterns) const;

  // Takes and gives back what differs between two states of the same lines. False when the list of
  // the desktop could not be read or written, or nothing differs.
  bool UpdateFileTypes(const std::vector<FileTypeLine>& before,
                       const std::vector<FileTypeLine>& after);

 private:
  std::string ListFile() const;
  bool Installed(const std::string& name) const;
  void WriteOwnEntry(bool resume);
  void RemoveOwnEntry();

  MimeTypes& mime_;
  FileTypePlaces places_;
};

}  // namespace kv
