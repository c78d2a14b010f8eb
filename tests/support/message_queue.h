// The message loop of a test.
#pragma once

namespace vantro::test {

// Serves this thread's messages until there are none; returns the number of WM_QUIT among them.
int DrainQueue();

}  // namespace vantro::test
