// Makes a program folder as a user has it after a while, for the benchmarks that start the player.
//
// prepare_home FOLDER INSTALLED_CONFIG plain|full [PLAYLIST]: "plain" is the installed
// configuration after its first start; "full" has every text of it filled, ten recent files, the
// processor graph, the level meter, and the playlist's window open with PLAYLIST in it and its
// details being read.
#include "state/settings_file.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kv {
namespace {

void FillAll(Settings& settings, const std::string& playlist) {
  for (std::size_t i = 0; i < settings.RecentFiles.size(); ++i) {
    settings.RecentFiles[i] =
        "/home/user/Films/A film of some length and more than one part, part " +
        std::to_string(i + 1) + ".mkv";
  }
  settings.QuickSearchText = "*song*";
  settings.LastOpenFolder = "/home/user/Films/";
  settings.LastSaveFolder = "/home/user/Copies/";
  settings.CpuGraph = FromBool(true);
  settings.CpuGraphGrid = FromBool(true);
  settings.CpuGraphGridMove = FromBool(true);
  settings.ShowVuMeter = FromBool(true);
  settings.PlaylistVisible = FromBool(true);
  settings.PlaylistShowDetails = FromBool(true);
  settings.FindPlaying = FromBool(true);
  settings.PlaylistFile = playlist;
  settings.PlaylistLeft = 15 * 100;
  settings.PlaylistTop = 15 * 560;
  settings.PlaylistWidth = 15 * 1000;
  settings.PlaylistHeight = 15 * 480;
}

int Run(const std::string& folder, const std::string& installed, bool full,
        const std::string& playlist) {
  Settings settings;
  ReadSettings(installed, settings);
  settings.FirstRun = FromBool(false);
  settings.CurrentFile.clear();
  settings.AutoLoadLast = FromBool(false);
  if (full) FillAll(settings, playlist);
  std::string error;
  if (WriteSettings(folder + "/config.dat", settings, &error)) return EXIT_SUCCESS;
  std::fprintf(stderr, "prepare_home: %s\n", error.c_str());
  return EXIT_FAILURE;
}

}  // namespace
}  // namespace kv

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: prepare_home FOLDER INSTALLED_CONFIG plain|full [PLAYLIST]\n");
    return EXIT_FAILURE;
  }
  return kv::Run(argv[1], argv[2], std::string(argv[3]) == "full", argc > 4 ? argv[4] : "");
}
