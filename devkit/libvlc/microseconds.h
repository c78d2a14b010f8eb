// Times of the variant that counts in microseconds.
#pragma once

#include <cstdint>

namespace vantro::devlib {

// An unknown time, which is negative, stays -1.
inline int64_t Microseconds(int64_t milliseconds) { return milliseconds < 0 ? -1 : milliseconds * 1000; }

// A negative time counts as 0.
inline int64_t Milliseconds(int64_t microseconds) { return microseconds < 0 ? 0 : microseconds / 1000; }

}  // namespace vantro::devlib
