#include "tests/unit/flutter_host/allocation_meter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool isMetering = false;
thread_local size_t allocations = 0;
thread_local size_t allocatedBytes = 0;

}  // namespace

// All forms are replaced, because AddressSanitizer replaces each that a program does not.
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  if (isMetering) {
    ++allocations;
    allocatedBytes += size;
  }
  return std::malloc(size ? size : 1);
}
void* operator new(size_t size) {
  if (void* block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void* operator new[](size_t size) { return operator new(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return operator new(size, std::nothrow); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, size_t) noexcept { std::free(block); }

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
