// With VANTRO_LIBVLC_STATS=FILE set, FILE gets one line of JSON a second for every player. Tests read from it what is
// shown and heard:
//
//   {"at":12.003,"player":"00007F1234567890","url":"http://...","state":"playing","time":4200,"volume":100,"mute":false,
//    "rms":0.0884,"frequency":440.1,"displayed":105,"abuffers":196}
//
// at: seconds since the process made its first player; player: the handle as the host's log prints it; time: ms; rms:
// after volume and mute, full scale 1; frequency: hertz, before volume and mute, 0 when nothing was played in that
// second; displayed and abuffers: libvlc's counters.
#pragma once

namespace vantro::devlib {

// Starts the log if it is asked for and not running. Any thread.
void StartMeterLog();

}  // namespace vantro::devlib
