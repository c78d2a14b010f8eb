// The file name and the seek time of a preview frame. Standard library only; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vod_thumbnail {

// Returns the name of the temporary file of a frame, from the media and the whole second. Frames of the same second use
// the same file, one after the other. A time out of the 32-bit range becomes the nearest end of that range; a NaN
// becomes 0.
std::string SnapshotFileName(std::string_view mediaId, double timeSeconds);

// Returns the time to seek to, in milliseconds. A time out of the 64-bit range becomes the nearest end of that range; a
// NaN becomes 0.
int64_t SeekTargetMs(double timeSeconds);

}  // namespace vod_thumbnail
