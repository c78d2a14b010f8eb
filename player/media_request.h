// What the single view is asked to play.
#pragma once

#include <string>

namespace vantro {

// One request from the channel to libvlc, kept by the player for the restart of a wedged stream.
struct MediaRequest {
  std::string url;
  std::string title;
  int networkCacheMs = 5000;
  int initialSeekPositionMs = 0;  // where playback begins; 0 and below is the beginning
  bool isLive = true;
  bool supportsTimeshift = false;
  bool inTimeshiftMode = false;
};

}  // namespace vantro
