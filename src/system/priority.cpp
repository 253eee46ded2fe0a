#include "system/priority.h"

#include "system/ascii_text.h"

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <sys/resource.h>
#include <system_error>

namespace kv {
namespace {

struct PriorityRow {
  int priority_class;
  std::string_view text;
  std::string_view word;  // empty: no word of its own
  int nice;               // what setting the class asks for
  int highest_nice;       // what still reads back as the class
};

// From the strongest to the weakest. The ranges meet halfway between the values that are set.
constexpr PriorityRow kClasses[] = {
    {kRealtimePriorityClass, "Realtime", "realtime", -20, -15},
    {kHighPriorityClass, "High", "high", -10, -8},
    {kAboveNormalPriorityClass, "Above Normal", "abovenormal", -5, -3},
    {kNormalPriorityClass, "Normal", "", 0, 5},
    {kBelowNormalPriorityClass, "Below Normal", "belownormal", 10, 14},
    {kIdlePriorityClass, "Idle", "low", 19, 19},
};

const PriorityRow* RowOf(int priority_class) {
  for (const PriorityRow& row : kClasses) {
    if (row.priority_class == priority_class) return &row;
  }
  return nullptr;
}

// A negative nice value looks like an error, so only errno tells.
std::optional<int> NiceOf(int process_id) {
  errno = 0;
  const int nice = getpriority(PRIO_PROCESS, static_cast<id_t>(process_id));
  if (errno != 0) return {};
  return nice;
}

}  // namespace

int PriorityClassOfWord(std::string_view word) {
  for (const PriorityRow& row : kClasses) {
    if (!row.word.empty() && EqualsIgnoringCase(row.word, word)) return row.priority_class;
  }
  return kNormalPriorityClass;
}

std::string PriorityClassText(int priority_class) {
  const PriorityRow* row = RowOf(priority_class);
  return row != nullptr ? std::string(row->text) : "Unknown:" + std::to_string(priority_class);
}

int GetProcessPriorityClass(int process_id) {
  const std::optional<int> nice = process_id < 0 ? std::nullopt : NiceOf(process_id);
  if (!nice) return 0;
  for (const PriorityRow& row : kClasses) {
    if (*nice <= row.highest_nice) return row.priority_class;
  }
  return kIdlePriorityClass;
}

int SetProcessPriorityClass(int process_id, int priority_class) {
  const PriorityRow* row = RowOf(priority_class);
  if (row != nullptr && process_id >= 0) {
    // The nice value belongs to the single thread here; new threads take it from their maker.
    const std::string process = process_id == 0 ? "self" : std::to_string(process_id);
    std::error_code error;
    std::filesystem::directory_iterator thread("/proc/" + process + "/task", error);
    for (const std::filesystem::directory_iterator end; !error && thread != end;
         thread.increment(error)) {
      const std::string name = thread->path().filename().native();
      int thread_id = 0;
      std::from_chars(name.data(), name.data() + name.size(), thread_id);
      setpriority(PRIO_PROCESS, static_cast<id_t>(thread_id), row->nice);
    }
  }
  return GetProcessPriorityClass(process_id);
}

}  // namespace kv
