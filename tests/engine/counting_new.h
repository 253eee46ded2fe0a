// Counts what the program takes from the heap by operator new.
#pragma once

#include <cstddef>

namespace kv {

// Of the calling thread, since its start.
std::size_t AllocationsOfThisThread();

}  // namespace kv
