#include "bench/dispatch/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<size_t> allocations{0};
std::atomic<size_t> allocatedBytes{0};
}  // namespace

void* operator new(size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  allocatedBytes.fetch_add(size, std::memory_order_relaxed);
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

namespace vantro::bench {

AllocationCount CountAllocations() { return {allocations, allocatedBytes}; }

}  // namespace vantro::bench
