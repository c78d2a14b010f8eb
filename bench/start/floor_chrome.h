// The window's chrome with the host's window calls but without the host: a repaint, and entering and leaving
// fullscreen.
#pragma once

namespace floor_program {

// Prints medians in microseconds, each measured over so many seconds, as lines such as "calls repaint 1.0". "calls"
// draws what the host draws. "nothing" has windows that draw nothing, which is the system's share.
void PrintChromeTimes(double seconds);

}  // namespace floor_program
