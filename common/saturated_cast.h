// Converts floating-point numbers that come from outside to integers. All such conversions use this function.
#pragma once

#include <limits>

namespace vantro {

// Returns the value without its fraction. A value outside the range of Int becomes the nearest end of that range, and a
// NaN becomes 0. The interface may send such numbers, and the plain conversion is undefined for them.
template <typename Int>
constexpr Int SaturatedCast(double value) {
  constexpr Int kLowest = std::numeric_limits<Int>::min();
  constexpr Int kHighest = std::numeric_limits<Int>::max();
  if (value != value) return 0;
  // The highest value of a 64-bit type has no exact double: the conversion rounds it up to the first value out of
  // range.
  if (value >= static_cast<double>(kHighest)) return kHighest;
  if (value <= static_cast<double>(kLowest)) return kLowest;
  return static_cast<Int>(value);
}

}  // namespace vantro
