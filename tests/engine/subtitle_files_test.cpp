// Which files beside a medium are taken for its subtitles.
#include "engine/subtitle_files.h"

#include "support/temp_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kv {
namespace {

TEST(SubtitleFilesTest, AreThoseOfTheSameName) {
  const TempFolder folder;
  for (const char* name :
       {"film.mkv", "film.txt", "film.2.srt", "film.cut.fr.srt", "filmed.srt", "other.srt", "srt",
        "film.en.srt", "FILM.SRT", "film.pt-BR.forced.ass", "film.de.srt", "film.sdh.vtt",
        "film.idx", "film.sub", "film.xx.yy.srt", "film.\xFF.srt", "film.fr.idx"}) {
    folder.Write(name, "text");
  }
  folder.Write("film.es.srt", "");
  folder.MakeFolder("film.it.srt");
  mkfifo(folder.Path("film.nl.srt").c_str(), 0600);
  folder.Write("film.sv.srt", "text");
  std::filesystem::resize_file(folder.Path("film.sv.srt"), 100'000'000);
  std::filesystem::create_symlink("/dev/zero", folder.Path("film.ru.srt"));
  std::filesystem::create_symlink("other.srt", folder.Path("film.cs.srt"));
  std::string found;
  for (const SubtitleFile& file : FindSubtitles(folder.Path("film.mkv"), "de")) {
    found += file.path.substr(folder.Path().size()) + "=" + file.language + " ";
  }
  EXPECT_EQ(found,
            "FILM.SRT= film.idx= film.de.srt=de film.cs.srt=cs film.en.srt=en "
            "film.pt-BR.forced.ass=pt-br film.sdh.vtt= ");
  EXPECT_TRUE(FindSubtitles(folder.Path("film.srt.mkv"), "").empty());
  EXPECT_TRUE(FindSubtitles("/no/such/folder/film.mkv", "").empty());
}

}  // namespace
}  // namespace kv
