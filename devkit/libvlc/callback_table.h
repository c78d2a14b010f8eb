// The callbacks that a player is made with, as libvlc 4 has it since 2026.
#pragma once

#include "libvlc4_abi.h"
#include "notice.h"

namespace vantro::devlib {

// Calls the one of `callbacks` that `notice` belongs to, with `opaque` and times in microseconds. Neither the structure
// nor any of its pointers has to be there. Windows threads only.
void TellCallbacks(const PlayerCallbacks* callbacks, void* opaque, const Notice& notice);

}  // namespace vantro::devlib
