// Counts this process's handles and GDI objects, also on systems that do not count them.
#pragma once

#include <windows.h>

#include <cstddef>

namespace vantro::test {

// Returns the number of kernel handles. Where GetProcessHandleCount returns 0, it is derived from the value of a new
// handle, because the lowest free value is used.
size_t HandleCount();

// Returns the number of GDI objects. Where GetGuiResources returns 0, objects are made until no more can be made, which
// takes some milliseconds. No other thread may make an object meanwhile.
size_t GdiObjectCount();

}  // namespace vantro::test
