#include "tests/unit/flutter_host/allocation_meter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool isMetering = false;
thread_local size_t allocations = 0;
thread_local size_t allocatedBytes = 0;

}  // namespace

void* operator new(size_t size) {
  if (isMetering) {
    ++allocations;
    allocatedBytes += size;
  }
  if (void* block = std::malloc(size ? size : 1)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }

namespace vantro::test {

AllocationMeter::AllocationMeter() {
  allocations = 0;
  allocatedBytes = 0;
  isMetering = true;
}
AllocationMeter::~AllocationMeter() { isMetering = false; }
size_t AllocationMeter::count() const { return allocations; }
size_t AllocationMeter::bytes() const { return allocatedBytes; }

}  // namespace vantro::test
