// Counts what this program allocates with new; libraries beside it have allocators of their own.
#pragma once

#include <cstddef>

namespace vantro::bench {

struct AllocationCount {
  size_t allocations;
  size_t bytes;
};
// Since the program began. Any thread.
AllocationCount CountAllocations();

}  // namespace vantro::bench
