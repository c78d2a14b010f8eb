// With VANTRO_LIBVLC_TIMES=FILE set, FILE gets one line of JSON for each moment of a playback. Benchmarks compute from
// it how long a picture took:
//
//   {"at":5012.004211,"what":"first_picture","player":"00007F1234567890"}
//
// at: seconds of CLOCK_MONOTONIC_RAW, which QueryPerformanceCounter also uses under Wine. what: "media_new" (with
// player 0), "stop", "set_media" and "play" when the program called them; "displayed" when libvlc delivered the first
// picture after a play, "first_picture" when it was drawn in that player's window.
#pragma once

namespace vantro::devlib {

// Any thread. Does nothing when the log is off.
void LogTime(const char* what, const void* player);

}  // namespace vantro::devlib
