// The one conversion from floating point to integers of what arrives from outside.
#pragma once

#include <limits>

namespace vantro {

// The value without its fraction. Beyond the range of Int it is the nearest end of that range, and 0 for a NaN: the
// plain conversion is undefined there, and these numbers come from the interface.
template <typename Int>
constexpr Int SaturatedCast(double value) {
  constexpr Int kLowest = std::numeric_limits<Int>::min();
  constexpr Int kHighest = std::numeric_limits<Int>::max();
  if (value != value) return 0;
  // The highest value of a 64-bit type has no exact double: its conversion rounds up to the first one out of range.
  if (value >= static_cast<double>(kHighest)) return kHighest;
  if (value <= static_cast<double>(kLowest)) return kLowest;
  return static_cast<Int>(value);
}

}  // namespace vantro
