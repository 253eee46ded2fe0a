// The time strip: position, duration and bytes played of the medium, or the title of a stream.
//
// The one writer of the picture box `PicTime`. It is asked 33 times a second, so it tells its view
// only what has changed, and asks the disk for the size of the medium once for each medium. Owned
// by `frmMain`; interface thread only. Seconds.
#pragma once

#include "engine/dshow_control.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/files.h"
#include "system/text_platform.h"

#include <functional>
#include <optional>
#include <string>

namespace kv {

// True while a stream plays that has no position to tell or move: the medium is named by an ASX
// metafile and its address is none of "mms://". Such a stream runs until the user stops it.
bool PlaysWithoutPosition(const Session& session);

// What the time display needs of the picture box that it draws into.
class PicTime {
 public:
  virtual ~PicTime() = default;

  // Takes away all that was printed.
  virtual void Cls() = 0;

  // Adds `text` at `x` pixels from the left, half-way up; it stays until the next Cls.
  virtual void Print(int x, const std::string& text) = 0;
};

class TimeDisplay {
 public:
  using FileSize = std::function<double(const std::string& path)>;

  // All must outlive this object.
  TimeDisplay(const clsDShowControl& movie, const Settings& settings, const TextPlatform& text,
              PicTime& view, FileSize file_size = FileSizeBytes);

  // Shows `position` in a medium of the engine's duration. Costs nothing, and allocates nothing,
  // while neither has changed.
  void ShowPosition(double position);

  // An estimate of the bytes up to `Seconds`, from the mean byte rate, as a text; "0.00 Bytes" for
  // what has no size or no duration.
  std::string GetCurBytes(double Seconds);

  // Shows the three texts, `Bytes` only for a local file that is none of the ASF family.
  void PrintTime(const std::string& Position, const std::string& Duration,
                 const std::string& Bytes);

  // Shows the title of a stream in place of the times.
  void PrintTitle(const std::string& title);

  // Forgets the size of the current medium, so that the next display asks for it again: a file that
  // is opened anew may have grown. A change of `CurrentFile` is noticed without this.
  void MediumChanged();

 private:
  struct Medium {
    std::string file;
    bool shows_bytes = false;
    double size = 0.0;  // bytes
  };
  struct Times {
    double position = 0.0;
    double duration = 0.0;
  };
  const Medium& CurrentMedium();

  const clsDShowControl& movie_;
  const Settings& settings_;
  const TextPlatform& text_;
  PicTime& view_;
  FileSize file_size_;

  std::optional<Medium> medium_;
  std::optional<Times> shown_;  // what the printed times were made of, when it is known

  // What is printed; a title stands alone in the first place.
  std::string position_text_;
  std::string duration_text_;
  std::string bytes_text_;
};

}  // namespace kv
