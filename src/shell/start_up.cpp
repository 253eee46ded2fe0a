#include "shell/start_up.h"

#include "system/priority.h"

#include <utility>

namespace kv {

StartUp::StartUp(Registry& registry, SetPriorityClass set_priority_class)
    : registry_(registry), set_priority_class_(std::move(set_priority_class)) {}

void StartUp::Main(const RawCommandLine& arguments) {
  parsed_ = ParseDebugSwitch(arguments);
  const std::string word = registry_.RegReadValue(RegistryRoot::kCurrentUser,
                                                  "Software\\Kestrelview\\Process", "Priority");
  const int in_force = set_priority_class_(PriorityClassOfWord(word));
  const std::string text = PriorityClassText(in_force);
  // Each write goes to the disk; one that would change nothing need not.
  const std::string recorded = registry_.RegReadValue(
      RegistryRoot::kCurrentUser, "software\\kestrelview\\process", "Priority_Cur");
  if (recorded == text) return;
  registry_.RegWriteValue(RegistryRoot::kCurrentUser, "software\\kestrelview\\process",
                          "Priority_Cur", kRegistryText, text);
}

}  // namespace kv
