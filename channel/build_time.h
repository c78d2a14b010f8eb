// The time at which this program was built.
#pragma once

namespace vantro {

// Returns the date and time of the build from the compiler, such as "Feb  8 2026 04:25:13".
const char* BuildTime();

}  // namespace vantro
