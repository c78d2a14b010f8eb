// Counts this program's allocations with new. Libraries beside it have their own allocators.
#pragma once

#include <cstddef>

namespace vantro::bench {

struct AllocationCount {
  size_t allocations;
  size_t bytes;
};
// Returns the count since the program began. Any thread.
AllocationCount CountAllocations();

}  // namespace vantro::bench
