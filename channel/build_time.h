// When this program was built.
#pragma once

namespace vantro {

// The compiler's date and time of the build, such as "Feb  8 2026 04:25:13".
const char* BuildTime();

}  // namespace vantro
