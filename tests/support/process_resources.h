// What this process holds of the system's resources, on systems that do not count them too.
#pragma once

#include <windows.h>

#include <cstddef>

namespace vantro::test {

// Kernel handles. Where GetProcessHandleCount answers 0, the place of a new one tells how many there are, since the
// lowest free place is taken.
size_t HandleCount();

// GDI objects. Where GetGuiResources answers 0, places are counted by making objects until there is no place left, which
// takes some milliseconds. No other thread may need an object meanwhile.
size_t GdiObjectCount();

}  // namespace vantro::test
