// The colour schemes: files "colorscemes/NAME.dat" of the table of colours.
//
// Those that come with the program lie in its data folders and are never written; a change, like
// every scheme of the user's, goes into the program folder and is found there first. Names are
// bytes, without ".dat". Owned by the main window; interface thread only.
#pragma once

#include "state/settings.h"
#include "system/app_folder.h"

#include <string>
#include <string_view>
#include <vector>

namespace kv {

inline constexpr std::string_view kDefaultScheme = "default";
inline constexpr std::string_view kSchemeEnding = ".dat";

// Characters that no name of a scheme may hold.
inline constexpr std::string_view kSchemeForbidden = R"(\/:*?"<>|)";

// Why an operation failed; a `code` of 0 means that it did not. Codes are the system's (errno).
struct SchemeError {
  int code = 0;
  std::string text;
  explicit operator bool() const { return code != 0; }
};

class ColorSchemes {
 public:
  // Both must outlive this object. The current scheme is `settings.ColorScheme`.
  ColorSchemes(Settings& settings, const ProgramFolder& folder);

  // Reads the current scheme into `settings.Colors`; without its file they stay as they are.
  void LoadColorInfo();

  // Writes the colours into the current scheme's file, which is created at need; on failure the
  // old file is whole.
  SchemeError SaveColorInfo() const;

  // "default" first, then by name.
  std::vector<std::string> Names() const;

  // The name in force, whether it has a file or not.
  std::string Current() const;
  void SetCurrent(const std::string& name);

  bool Exists(const std::string& name) const;

  // The current scheme under another name, too. Neither replaces a file.
  SchemeError Copy(const std::string& new_name) const;
  SchemeError Rename(const std::string& new_name) const;

  // Removes the current scheme. One of the program's own comes back as it was installed.
  SchemeError Delete() const;

 private:
  std::string InFolder(std::string_view folder, const std::string& name) const;
  // Where a scheme is read from; empty when there is none or the name is no name.
  std::string FileOf(const std::string& name) const;
  // Where it is written to.
  std::string OwnFileOf(const std::string& name) const;

  Settings& settings_;
  const ProgramFolder& folder_;
};

}  // namespace kv
