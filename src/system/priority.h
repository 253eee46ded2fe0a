// The priority class of a process: six classes, each with the number that names it, the text the
// user reads and the word that selects it in the settings.
//
// On this system a class is a nice value. Only a privileged user may raise a priority, so what is
// read back is always the class in force and never the one that was asked for. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

inline constexpr int kNormalPriorityClass = 32;
inline constexpr int kIdlePriorityClass = 64;
inline constexpr int kHighPriorityClass = 128;
inline constexpr int kRealtimePriorityClass = 256;
inline constexpr int kBelowNormalPriorityClass = 16384;
inline constexpr int kAboveNormalPriorityClass = 32768;

// The class that a word selects, any case: "realtime", "high", "abovenormal", "belownormal", "low".
// Every other text, the empty one included, is the normal class.
int PriorityClassOfWord(std::string_view word);

// "Normal", "Idle", "High", "Realtime", "Below Normal" or "Above Normal"; for any other number
// "Unknown:" with the number behind it.
std::string PriorityClassText(int priority_class);

// The class in force for a process, 0 for this one. Answers 0 when there is no such process.
int GetProcessPriorityClass(int process_id);

// Gives all threads of a process the class, 0 for this one, and answers the class in force then. A
// number that is no class changes nothing.
int SetProcessPriorityClass(int process_id, int priority_class);

}  // namespace kv
