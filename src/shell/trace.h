// A record of when things happened, for whoever measures the player from outside.
//
// With the environment variable KESTRELVIEW_TRACE naming a file, one line is appended for each
// event: seconds of the system's monotonic clock with six decimals, the event, its value, separated
// by tabs. Without it every call returns at once. Interface thread only.
#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

namespace kv {

class Trace {
 public:
  // Opens the file, if one is named.
  Trace();

  bool Active() const { return file_ != nullptr; }
  void Write(std::string_view event, std::string_view value = {});
  void WriteSeconds(std::string_view event, double seconds);

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::unique_ptr<std::FILE, Close> file_;
};

}  // namespace kv
