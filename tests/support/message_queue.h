// The message loop of a test.
#pragma once

namespace vantro::test {

// Handles this thread's messages until there are none. Returns the number of WM_QUIT among them.
int DrainQueue();

}  // namespace vantro::test
