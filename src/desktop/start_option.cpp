#include "desktop/start_option.h"

#include "system/translation.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kv {
namespace {

using Kind = StartOption::Kind;

constexpr std::array kOptions{
    StartOption{"--play-pause", Kind::kCallPlayer, "PlayPause",
                TrLater("play or pause, in the player that runs")},
    StartOption{"--stop", Kind::kCallPlayer, "Stop", TrLater("stop, in the player that runs")},
    StartOption{"--next", Kind::kCallPlayer, "Next",
                TrLater("next entry of the list, in the player that runs")},
    StartOption{"--previous", Kind::kCallPlayer, "Previous",
                TrLater("previous entry of the list, in the player that runs")},
    StartOption{"--help", Kind::kTellUsage, "", TrLater("tell this and end")},
    StartOption{"--version", Kind::kTellVersion, "", TrLater("tell the version and end")},
};

constexpr std::size_t kColumn = 16;  // where the descriptions begin

}  // namespace

const StartOption* StartOptionOf(const std::vector<std::string>& arguments) {
  if (arguments.size() != 1) return nullptr;
  const auto* const found =
      std::find_if(kOptions.begin(), kOptions.end(),
                   [&](const StartOption& option) { return arguments.front() == option.name; });
  return found == kOptions.end() ? nullptr : found;
}

std::string UsageText() {
  std::string text = Tr("Usage: kestrelview [FILE]");
  text += "\n\n";
  for (const StartOption& option : kOptions) {
    std::string name = option.name;
    name.resize(kColumn, ' ');
    text += "  " + name + Tr(option.description) + '\n';
  }
  return text;
}

}  // namespace kv
