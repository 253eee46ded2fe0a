#include "shell/run_once.h"

#include "state/desktop_entry.h"
#include "system/save_file.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace kv {

RunOnce::RunOnce(std::string autostart_folder) : folder_(std::move(autostart_folder)) {}

std::string RunOnce::UserFolder() {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/') return std::string(config) + "/autostart/";
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') return {};
  return std::string(home) + "/.config/autostart/";
}

std::string RunOnce::File() const {
  return folder_ + "KestrelviewAutoRestart.desktop";
}

bool RunOnce::Register(const std::string& program) const {
  if (folder_.empty() || program.find('\n') != std::string::npos) return false;
  return SaveFileChecked(File(), "[Desktop Entry]\nType=Application\nName=Kestrelview\nExec=" +
                                     QuotedForExec(program) + "\nX-GNOME-Autostart-enabled=true\n");
}

void RunOnce::Clear() const {
  if (!folder_.empty()) unlink(File().c_str());
}

}  // namespace kv
