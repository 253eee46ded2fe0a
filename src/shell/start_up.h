// The program's first steps, before any window: debug switch and process priority.
//
// Runs once, on the thread that will be the interface thread.
#pragma once

#include "shell/command_line.h"
#include "system/registry.h"

#include <functional>
#include <string>

namespace kv {

class StartUp {
 public:
  // Gives this process a priority class and answers the class in force then.
  using SetPriorityClass = std::function<int(int priority_class)>;

  explicit StartUp(Registry& registry, SetPriorityClass set_priority_class);

  // Takes the command line, applies the stored priority (also the normal one) and records the class
  // in force. A store that cannot be read gives the normal class, one that cannot be written is
  // passed over. What follows, loading the main window, is the caller's.
  void Main(const RawCommandLine& arguments);

  // The arguments without the debug switch.
  const std::string& CommandLine() const { return parsed_.CommandLine; }

  // In debug mode the program runs without window hooks: no message hook, no wheel hook, no
  // docking.
  bool IsDebugMode() const { return parsed_.DebugMode; }

 private:
  Registry& registry_;
  SetPriorityClass set_priority_class_;
  ParsedCommandLine parsed_;
};

}  // namespace kv
