// How a preview frame is asked of libvlc. Standard library only; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vod_thumbnail {

// The name of the temporary file of a frame: by media and whole second, so that two frames of one second share it, one
// after the other. A time beyond 32 bits takes the nearest end of that range, a NaN counts as 0.
std::string SnapshotFileName(std::string_view mediaId, double timeSeconds);

// Where to seek to, in milliseconds; the nearest 64-bit value for a time beyond them, 0 for a NaN.
int64_t SeekTargetMs(double timeSeconds);

}  // namespace vod_thumbnail
