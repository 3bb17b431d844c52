#pragma once

#include <cstddef>

namespace tamrin {

// How many bytes of operator new are in use, and how many were at most since RestartPeak. Counts
// only in programs that link live_bytes.cpp, which replaces operator new.
std::size_t LiveBytes();
std::size_t PeakBytes();
void RestartPeak();

}  // namespace tamrin
