#include "system/cpu_usage.h"

#include "system/file_descriptor.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace kv {
namespace {

// Two or three processors fit into one piece; a machine of ten thousand is believed.
constexpr std::size_t kPiece = 1024;
constexpr std::size_t kStatBytes = std::size_t{1024} * kPiece;

// user nice system idle iowait irq softirq steal; the guests' times behind them are in the first
// two already.
constexpr std::size_t kTimes = 8;
constexpr std::size_t kIdle = 3;
constexpr std::size_t kIoWait = 4;

struct Counters {
  std::int64_t idle = 0;    // ticks, summed over all processors
  std::int64_t system = 0;  // all ticks that they had, idle or not
  int processors = 0;
};

std::string_view NextWord(std::string_view& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string_view::npos) return text = {};
  const std::size_t end = std::min(text.find(' ', begin), text.size());
  const std::string_view word = text.substr(begin, end - begin);
  text.remove_prefix(end);
  return word;
}

// The sums of the line "cpu"; old kernels have fewer times, and the first four at least.
bool ReadSums(std::string_view times, Counters& counters) {
  std::size_t count = 0;
  for (; count < kTimes; ++count) {
    const std::string_view word = NextWord(times);
    if (word.empty()) break;
    std::int64_t ticks = 0;
    if (std::from_chars(word.data(), word.data() + word.size(), ticks).ec != std::errc()) {
      return false;
    }
    counters.system += ticks;
    if (count == kIdle || count == kIoWait) counters.idle += ticks;
  }
  return count > kIdle;
}

std::optional<Counters> ReadCounters(const std::string& file) {
  const FileDescriptor stat(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!stat.IsOpen()) return std::nullopt;
  // The lines of the processors come first; the long ones behind them need not be fetched.
  std::string bytes;
  std::array<char, kPiece> piece{};
  do {
    const std::ptrdiff_t size = stat.Read(piece.data(), piece.size());
    if (size < 0) return std::nullopt;
    if (size == 0) break;
    bytes.append(piece.data(), static_cast<std::size_t>(size));
  } while (bytes.find("\nintr") == std::string::npos && bytes.size() < kStatBytes);

  Counters counters;
  bool sums = false;
  std::string_view rest = bytes;
  while (rest.starts_with("cpu")) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (NextWord(line) != "cpu") {
      ++counters.processors;
    } else if (!ReadSums(line, counters)) {
      return std::nullopt;
    } else {
      sums = true;
    }
  }
  if (!sums || counters.processors == 0) return std::nullopt;
  return counters;
}

double RoundToFourDecimals(double value) {
  return std::nearbyint(value * 10000) / 10000;
}

}  // namespace

clsCPUUsageNT::clsCPUUsageNT(std::string stat_file) : stat_file_(std::move(stat_file)) {}

void clsCPUUsageNT::Initialize() {
  const std::optional<Counters> counters = ReadCounters(stat_file_);
  if (!counters) return;
  OldIdleTime_ = counters->idle;
  OldSystemTime_ = counters->system;
}

std::int32_t clsCPUUsageNT::Query() {
  const std::optional<Counters> counters = ReadCounters(stat_file_);
  if (!counters) return kCpuUsageUnknown;
  const auto idle_delta = static_cast<double>(counters->idle - OldIdleTime_);
  // What each processor had, which is the time gone by.
  const double time_delta =
      static_cast<double>(counters->system - OldSystemTime_) / counters->processors;
  // Within one tick nothing has been counted; the figure means nothing then.
  const double ratio = time_delta == 0 ? idle_delta : RoundToFourDecimals(idle_delta / time_delta);
  const double percent = std::floor(100 - 100 * ratio / counters->processors + 0.5);
  OldIdleTime_ = counters->idle;
  OldSystemTime_ = counters->system;
  constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(std::max(percent, kLeast), kMost));
}

std::int32_t CpuGraphFeed::Next() {
  if (!asked_) CurrentCpu_ = probe_.Query();
  asked_ = !asked_;
  return CurrentCpu_;
}

}  // namespace kv
