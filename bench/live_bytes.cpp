#include "live_bytes.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t live = 0;
std::size_t peak = 0;

}  // namespace

namespace tamrin {

std::size_t LiveBytes() { return live; }
std::size_t PeakBytes() { return peak; }
void RestartPeak() { peak = live; }

}  // namespace tamrin

void* operator new(std::size_t size) {
    void* block = std::malloc(size);
    if (!block) throw std::bad_alloc();
    live += malloc_usable_size(block);
    peak = std::max(peak, live);
    return block;
}

void operator delete(void* block) noexcept {
    live -= malloc_usable_size(block);
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
