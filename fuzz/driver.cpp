// The fuzzer's way into a target.
#include "support.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kv::fuzz::Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
