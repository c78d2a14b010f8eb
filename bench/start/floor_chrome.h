// The window's chrome with the host's window calls and without the host: a repaint, and fullscreen and back.
#pragma once

namespace floor_program {

// Prints medians in microseconds, each taken over so many seconds, as lines "calls repaint 1.0": with what the host
// draws
// ("calls"), and with windows that draw nothing ("nothing"), which is the system's share.
void PrintChromeTimes(double seconds);

}  // namespace floor_program
