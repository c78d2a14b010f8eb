// What a player tells its program, before it is put into the terms of one of libvlc 4's interfaces.
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
  MediaRef media{};                           // of kMediaChanged and kMediaStopping
  State state{};                              // of kState
  StopReason reason{};                        // of kMediaStopping
  float percent = 0;                          // of kBuffering
  int32_t before = 0;                         // of kCapabilities: kCanSeek and so on
  int32_t now = 0;                            //
  int64_t time = 0;                           // milliseconds, of kTime and kLength
  double position = 0;                        // of kTime
  TrackType trackType = TrackType::kUnknown;  // of the three about tracks
  int32_t trackNumber = -1;                   // libvlc 3's; -1 when a selection ends
  int32_t previousTrack = -1;                 // of kTrackSelected: what was selected before, -1 for nothing
  unsigned pictures = 0;                      // of kPictures: how many places show pictures
};

// The text id of a track: its kind and libvlc 3's number.
std::string TrackId(TrackType type, int32_t number);

}  // namespace vantro::devlib
