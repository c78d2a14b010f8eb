// With VANTRO_LIBVLC_TIMES=FILE set, FILE gets one line of JSON for each moment of a playback, by which a benchmark can
// tell how long a picture took:
//
//   {"at":5012.004211,"what":"first_picture","player":"00007F1234567890"}
//
// at: seconds of CLOCK_MONOTONIC_RAW, which is also what QueryPerformanceCounter counts under Wine. what: "media_new"
// (with player 0), "stop", "set_media" and "play" when the program called them; "displayed" when libvlc handed over the
// first picture behind a play, "first_picture" when that player's window had it.
#pragma once

namespace vantro::devlib {

// Any thread. Does nothing when the log is not asked for.
void LogTime(const char* what, const void* player);

}  // namespace vantro::devlib
