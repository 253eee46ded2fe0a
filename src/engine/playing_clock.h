// The position of a medium as a clock that runs between the reports of its decoder.
//
// A decoder tells the position picture by picture: 25 times a second, once a second, or at
// irregular distances. The player reads it every 30 ms and takes a position that does not move for
// the end of the medium. So this clock runs on with real time while the medium plays, follows each
// report smoothly, waits rather than go back while it runs, and stands exactly still when halted or
// at the end. It asks no clock itself: every call is told the time. Seconds throughout. Interface
// thread only.
#pragma once

#include <chrono>

namespace kv {

class PlayingClock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  // Back to a halted clock at 0 with no duration and rate 1.
  void Reset();

  // 0 when the medium has no known end.
  void SetDuration(double seconds);
  double Duration() const { return duration_; }

  // How long a picture of this medium stays, at most, as far as that is known: 0 when it is not.
  // Without a report for much longer than that the decoder is stuck and the clock waits for it.
  void SetPictureSeconds(double seconds) { picture_ = seconds; }

  void Run(TimePoint now);
  void Halt(TimePoint now);
  bool Running() const { return running_; }

  // Above 0; 1 is normal.
  void SetRate(double rate, TimePoint now);

  // A new position was asked for: it is the position from now on, and reports do not count until
  // the decoder confirms with `EndSeek`, saying where it is. Only when that is far from what was
  // asked for does it become the position.
  void BeginSeek(double seconds, TimePoint now);
  void EndSeek(double seconds, TimePoint now);

  // What the decoder says is on the screen now. Ignored while halted and while seeking.
  void Report(double seconds, TimePoint now);

  // The medium goes on only when more data has come.
  void SetStalled(bool stalled, TimePoint now);

  // The decoder has reached the end of its data. It says so while the last picture and the last
  // sound are still due: the clock runs on through them to the duration and stands there. A medium
  // that ends long before its duration is cut off, and its position is the duration at once. Ended
  // by a seek.
  void SetEnded(bool ended, TimePoint now);
  bool Ended() const { return ended_; }

  double Position(TimePoint now) const;

 private:
  void Anchor(double position, double correction, TimePoint now);
  double Advance(TimePoint now) const;

  double duration_ = 0.0;
  double picture_ = 0.0;
  double rate_ = 1.0;
  double base_ = 0.0;        // position at `anchor_`
  double correction_ = 0.0;  // what is still to be added over the time after `anchor_`
  TimePoint anchor_{};
  bool running_ = false;
  bool seeking_ = false;
  bool stalled_ = false;
  bool ended_ = false;
  bool outlasts_ = false;     // has been reported behind its duration, which then limits nothing
  bool waiting_ = false;      // ahead of the decoder, which is to catch up
  bool running_out_ = false;  // ended, and what is left is still being shown
};

}  // namespace kv
