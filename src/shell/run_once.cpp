#include "shell/run_once.h"

#include "system/save_file.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

// Quoting of the Desktop Entry Specification's key Exec: an argument in double quotes, in which
// four characters take a backslash, and a per cent sign counts double. The backslash itself is
// doubled once more, as the value is a string that knows escapes too.
std::string QuotedForExec(std::string_view argument) {
  std::string quoted = "\"";
  for (const char c : argument) {
    if (c == '\\') {
      quoted += "\\\\\\\\";
    } else if (c == '"' || c == '`' || c == '$') {
      quoted += "\\\\";
      quoted += c;
    } else if (c == '%') {
      quoted += "%%";
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

}  // namespace

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
