// What the sentences about a filter graph need of a back end, so that each of them is checked once
// and holds for every back end: the real one in real time, the fake one in virtual time.
#pragma once

#include "engine/filter_graph.h"

#include <functional>
#include <memory>
#include <string>

namespace kv {

enum class Medium {
  kFilm,      // 3 s, 160 by 120, 25 pictures a second, with sound
  kSlowFilm,  // 5 s, one picture a second, no sound
  kVfrFilm,   // 3 s, pictures at irregular distances, no sound
  kTone,      // 2 s, sound alone
  kDual,      // a film with two sounds and two subtitles, of which the first are the default
  kMissing,
  kEmpty,
  kTruncated,
  kText,
  kPlaylist,
  kFolder,
  kFifo,
  kForeignScheme,
};

class GraphBench {
 public:
  virtual ~GraphBench() = default;

  virtual std::shared_ptr<FilterGraph> MakeGraph() = 0;
  // The name to render for a medium of this kind.
  virtual std::string Name(Medium medium) = 0;
  // The path of a file of subtitles.
  virtual std::string Subtitles() = 0;
  // Lets time pass and handles what comes.
  virtual void Pass(int milliseconds) = 0;
  // A clock in seconds.
  virtual double Now() = 0;
  // Runs `action` inside a pump of the next RenderFile.
  virtual void InsidePump(std::function<void()> action) = 0;
};

// Each program that the sentences are built into brings its own.
std::unique_ptr<GraphBench> MakeBench();

}  // namespace kv
