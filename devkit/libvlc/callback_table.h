// The callbacks that a player is made with, as in libvlc 4 since 2026.
#pragma once

#include "libvlc4_abi.h"
#include "notice.h"

namespace vantro::devlib {

// Calls the member of `callbacks` for `notice`, with `opaque` and times in microseconds. The structure and each of its
// pointers may be null. Windows threads only.
void NotifyCallbacks(const PlayerCallbacks* callbacks, void* opaque, const Notice& notice);

}  // namespace vantro::devlib
