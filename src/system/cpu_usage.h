// The machine's processor load in percent, as the CPU graph shows it.
//
// A probe counts from one query to the next; the counters are the kernel's, in clock ticks summed
// over all processors. Owned by `frmMain`; interface thread only. No call waits or throws.
#pragma once

#include <cstdint>
#include <string>

namespace kv {

// What a failed query answers; below the bottom of the graph.
inline constexpr std::int32_t kCpuUsageUnknown = -1;

class clsCPUUsageNT {
 public:
  // `stat_file` has the format of proc(5), /proc/stat.
  explicit clsCPUUsageNT(std::string stat_file = "/proc/stat");

  // Begins the first interval. When the counters cannot be read it begins at the machine's start.
  void Initialize();

  // Percent busy since the last query that succeeded, or kCpuUsageUnknown. Not clamped: a short
  // interval may give a figure below 0 or above 100.
  std::int32_t Query();

  // Nothing to release; part of every probe.
  void Terminate() {}

 private:
  std::string stat_file_;
  std::int64_t OldIdleTime_ = 0;
  std::int64_t OldSystemTime_ = 0;
};

// What the graph draws at each of its ticks: the probe is asked at every second one, so that each
// reading is drawn twice.
class CpuGraphFeed {
 public:
  // `probe` must outlive this object.
  explicit CpuGraphFeed(clsCPUUsageNT& probe) : probe_(probe) {}

  std::int32_t Next();

 private:
  clsCPUUsageNT& probe_;
  bool asked_ = false;  // at the last tick
  std::int32_t CurrentCpu_ = 0;
};

}  // namespace kv
