// What the player asks about the machine it runs on. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace kv {

struct WindowsVersionInfo {
  std::string platform;      // "NT": one kernel that counts processor time itself
  std::string version;       // major and minor of the kernel, "6.1"
  std::int32_t build = 0;    // its third number
  std::string service_text;  // the kernel's own words about its build
};

// Always "NT" here, whatever the kernel's number.
WindowsVersionInfo GetWindowsVersionInfo();

// Milliseconds since some moment before the program's start. Wraps around after 49.7 days:
// subtract two of them as unsigned numbers.
std::uint32_t TickCount();

}  // namespace kv
