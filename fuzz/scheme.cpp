// Colour schemes: a name as the settings may hold it, and the file's bytes.
#include "state/color_file.h"
#include "state/color_scheme.h"
#include "support.h"

namespace kv::fuzz {
namespace {

constexpr std::size_t kWhole = kColorSlots * 4;

}  // namespace

void Try(std::string_view input) {
  Parts parts(input);
  const std::string name(parts.Next());
  const std::string_view bytes = parts.Rest();
  static const Folder folder;
  const std::string file = folder.Write("home/colorscemes/a.dat", bytes);

  ColorTable colors{};
  colors.fill(-2);
  const bool whole = ReadColorFile(file, colors);
  Require(whole == (bytes.size() >= kWhole), "a scheme is whole with all its slots");
  for (std::size_t slot = bytes.size() / 4; slot < kColorSlots; ++slot) {
    Require(colors[slot] == -2, "slots that are missing stay");
  }
  Require(WriteColorFile(folder.Path() + "b.dat", colors), "a scheme can be written");
  const std::string written = folder.Read("b.dat");
  Require(written.size() == kWhole, "a scheme has one size");
  Require(!whole || bytes.starts_with(written), "a scheme is written as it was read");

  static const ProgramFolder program({.kestrelview_home = folder.Path() + "home",
                                      .xdg_data_home = {},
                                      .user_home = {},
                                      .executable_path = folder.Path() + "none/kestrelview",
                                      .data_folder = {}});
  Settings settings;
  settings.ColorScheme = name;
  ColorSchemes schemes(settings, program);
  schemes.LoadColorInfo();
  const bool exists = schemes.Exists(schemes.Current());
  if (!exists) Require(settings.Colors == ColorTable{}, "without its file the colours stay");
  Require(!exists || name.find('/') == std::string::npos, "no name leads out of the folder");
  schemes.SetCurrent(schemes.Current());
  Require(schemes.Exists(schemes.Current()) == exists, "the current scheme can be set again");
}

}  // namespace kv::fuzz
