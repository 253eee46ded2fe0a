// Shell services that only record, with results that the test sets.
#pragma once

#include "system/shell_services.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace kv {

class FakeShellServices : public ShellServices {
 public:
  struct Trashed {
    std::string path;
    bool confirm = false;
  };
  struct Opened {
    std::string file;
  };
  struct Played {
    std::string file;
    bool wait = false;
  };

  int SendToRecycleBin(const std::string& path, bool confirm, bool /*silent*/) override {
    trashed.push_back({path, confirm});
    if (trash_result == 0) {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
    return trash_result;
  }

  int ShellOpenDocument(const std::string& file, const std::string& /*parameters*/,
                        const std::string& /*folder*/, const std::string& /*verb*/) override {
    opened.push_back({file});
    return 33;
  }

  void PlaySoundEx(const std::string& file, bool wait, bool /*loop*/, bool /*no_stop*/,
                   bool /*no_default*/) override {
    played.push_back({file, wait});
  }

  // 0: the file is really removed, as the trash takes it. Other: refused, the file stays.
  int trash_result = 0;

  std::vector<Trashed> trashed;
  std::vector<Opened> opened;
  std::vector<Played> played;
};

}  // namespace kv
