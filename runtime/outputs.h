// The choice of the sound output of an instance.
//
// The host asks for DirectSound, which no libvlc 4 has. The library would fall back to the output of Windows' audio
// session, whose volume and mute belong to the whole process: the tile that was set last would decide for all tiles.
// The output "waveout" keeps volume and mute for each player.
#pragma once

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

// Calls libvlc_new. If the arguments name an output that the library does not have, waveout takes its place, if the
// library has waveout. Only an instance lists the library's outputs. So the first instance of the process that names an
// output is created, asked, and created again if it needs waveout. Later instances are created right at once. The real
// library must be usable. Any thread.
Instance* NewInstance(int count, const char* const* arguments);

}  // namespace vantro::runtime
