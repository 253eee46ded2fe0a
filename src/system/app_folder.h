// Where the player keeps its files: one writable program folder, and read-only data beside it.
//
// Made once at start and handed to whoever needs it. The program folder is $KESTRELVIEW_HOME if
// set; else the folder of the executable if it holds "config.dat" and can be written (portable
// use); else $XDG_DATA_HOME/kestrelview/. Everything is written there; what the user does not have
// there is read from the installed data folders. Constant after construction: any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

// What the choice depends on. Empty means unset.
struct AppFolderSources {
  std::string kestrelview_home;    // $KESTRELVIEW_HOME
  std::string xdg_data_home;       // $XDG_DATA_HOME; counts only when absolute
  std::string user_home;           // the user's home folder
  std::string executable_path;     // absolute
  std::string data_folder;         // fixed when the program was built
  std::string locale_folder = {};  // the same

  // From the environment and the running executable.
  static AppFolderSources OfThisProcess();
};

class ProgramFolder {
 public:
  // Chooses the folder and creates it, private to the user (0700). A folder that cannot be created
  // is not an error here: reads find nothing in it and each save reports its own failure.
  explicit ProgramFolder(const AppFolderSources& sources);

  // The program folder, absolute, with a trailing "/".
  const std::string& AppFolder() const { return app_folder_; }

  // All folders in which a data file is looked for, best first, each with a trailing "/": the
  // program folder, "../share/kestrelview/" beside the executable, the folder fixed at build time.
  const std::vector<std::string>& DataFolders() const { return data_folders_; }

  // The folder of the texts' catalogues, see BindTranslations(): "../share/locale" beside the
  // executable where there is such a folder, else the one fixed at build time.
  const std::string& LocaleFolder() const { return locale_folder_; }

  // The whole path of a file or folder of the program's data, for reading: `name` is relative
  // ("icons/play.ico"). Where no folder has it the answer lies in AppFolder().
  std::string DataFile(std::string_view name) const;

 private:
  std::string app_folder_;
  std::vector<std::string> data_folders_;
  std::string locale_folder_;
};

}  // namespace kv
