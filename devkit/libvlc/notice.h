// An event of a player, before it is converted to one of libvlc 4's interfaces.
#pragma once

#include <cstdint>
#include <string>

#include "libvlc4_abi.h"
#include "media.h"

namespace vantro::devlib {

struct Notice {
  enum class Kind {
    kMediaChanged,
    kState,
    kError,
    kMediaStopping,
    kBuffering,
    kCapabilities,
    kTime,
    kLength,
    kTrackAdded,
    kTrackRemoved,
    kTrackSelected,
    kPictures,
  };
  Kind kind;
  MediaRef media{};                           // for kMediaChanged and kMediaStopping
  State state{};                              // for kState
  StopReason reason{};                        // for kMediaStopping
  float percent = 0;                          // for kBuffering
  int32_t before = 0;                         // for kCapabilities: bits such as kCanSeek
  int32_t now = 0;                            //
  int64_t time = 0;                           // milliseconds, for kTime and kLength
  double position = 0;                        // for kTime
  TrackType trackType = TrackType::kUnknown;  // for the three events about tracks
  int32_t trackNumber = -1;                   // libvlc 3's; -1 when a selection ends
  int32_t previousTrack = -1;                 // for kTrackSelected: the track selected before, -1 for none
  unsigned pictures = 0;                      // for kPictures: the number of outputs that show pictures
};

// The text id of a track: its kind and libvlc 3's number.
std::string TrackId(TrackType type, int32_t number);

}  // namespace vantro::devlib
