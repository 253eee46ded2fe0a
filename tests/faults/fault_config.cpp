// fault_config FILE [FIELD=VALUE...]: writes a "config.dat" with the usual settings and these.
// fault_config FILE FIELD: prints one field of it, its first element if it has several.
//
// Fields by their names in the settings record. A Boolean is -1 or 0.
#include "state/settings_fields.h"
#include "state/settings_file.h"

#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace {

const kv::SettingsField* FieldNamed(std::string_view name) {
  for (const kv::SettingsField& field : kv::kSettingsFields) {
    if (field.name == name) return &field;
  }
  std::cerr << "no such field: " << name << '\n';
  return nullptr;
}

bool Set(kv::Settings& settings, const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  const kv::SettingsField* field = FieldNamed(std::string_view(assignment).substr(0, equals));
  if (field == nullptr) return false;
  const std::string value = assignment.substr(equals + 1);
  bool first = true;
  kv::VisitField(settings, *field, [&](auto& element) {
    if (!std::exchange(first, false)) return;
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(element)>, std::string>) {
      element = value;
    } else {
      std::istringstream(value) >> element;
    }
  });
  return true;
}

// Full volume, true speed, centred; a window that stays where it is.
kv::Settings Usual() {
  kv::Settings settings;
  settings.Volume = 99;
  settings.PlayRate = 20;
  settings.Balance = 9;
  settings.KeepAspect = settings.FitToWindow = kv::FromBool(true);
  settings.RememberSize = settings.RememberWindowPos = kv::FromBool(true);
  settings.WindowLeft = settings.WindowTop = 60 * 15;
  settings.WindowWidth = 640 * 15;
  settings.WindowHeight = 420 * 15;
  settings.ColorScheme = "default.dat";
  return settings;
}

int Print(const char* file, const char* name) {
  kv::Settings settings;
  const kv::SettingsField* field = FieldNamed(name);
  if (field == nullptr || !kv::ReadSettings(file, settings)) return 1;
  bool first = true;
  kv::VisitField(settings, *field, [&](const auto& element) {
    if (std::exchange(first, false)) std::cout << element << '\n';
  });
  return 0;
}

}  // namespace

int main(int count, char** words) {
  if (count < 2) return 2;
  if (count == 3 && std::string_view(words[2]).find('=') == std::string_view::npos) {
    return Print(words[1], words[2]);
  }
  kv::Settings settings = Usual();
  for (int i = 2; i < count; ++i) {
    if (!Set(settings, words[i])) return 2;
  }
  return kv::WriteSettings(words[1], settings) ? 0 : 1;
}
