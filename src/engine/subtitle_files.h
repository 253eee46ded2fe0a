// Which files beside a medium hold its subtitles, and which files may be opened as subtitles.
//
// A back end opens what it is told to: a FIFO named like a subtitle file would hold it up for good,
// a huge file fill the memory. So the files are found and judged here. Both operations ask the file
// system and may wait for it; any thread.
#pragma once

#include <string>
#include <vector>

namespace kv {

struct SubtitleFile {
  std::string path;
  std::string language;  // from the name: "de" of "film.de.srt"; empty if it names none
};

// Whether `path` can be opened as subtitles: a regular file, behind links or not, neither empty nor
// larger than subtitles are.
bool MayBeSubtitles(const std::string& path);

// The subtitle files of `medium`, an absolute path: in the same folder, with its name and nothing
// else than the marks of a language or a kind behind it ("film.srt", "film.pt-BR.forced.ass"), in
// any ASCII letter case. The one without marks comes first, then those in `language` (two or three
// letters), then the others by name; at most 16.
std::vector<SubtitleFile> FindSubtitles(const std::string& medium, const std::string& language);

}  // namespace kv
