// The choice of the sound output of an instance.
//
// The host asks for DirectSound, which no libvlc 4 has. The library would fall back to the output of Windows' audio
// session, whose volume and mute belong to the whole process: the tile that was set last would decide for all tiles.
// The output "waveout" keeps volume and mute for each player.
#pragma once

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

// libvlc_new, with waveout for an output that the library doesn't have, if it has waveout. Only an instance can tell the
// library's outputs: the first one of the process that names an output is asked, and made again if it needs waveout; the
// later ones are made right at once. The real library must be usable. Any thread.
Instance* NewInstance(int count, const char* const* arguments);

}  // namespace vantro::runtime
