// Counts the bytes that this thread allocates with operator new during the life of the meter.
#pragma once

#include <cstddef>

namespace vantro::test {

class AllocationMeter {
 public:
  AllocationMeter();
  ~AllocationMeter();
  AllocationMeter(const AllocationMeter&) = delete;
  AllocationMeter& operator=(const AllocationMeter&) = delete;

  size_t count() const;
  size_t bytes() const;
};

}  // namespace vantro::test
