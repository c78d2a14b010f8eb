// A request to play a media in the single view.
#pragma once

#include <string>

namespace vantro {

// Read from the channel. The player keeps the last one, to restart a wedged stream.
struct MediaRequest {
  std::string url;
  std::string title;
  int networkCacheMs = 5000;
  int initialSeekPositionMs = 0;  // where playback starts; 0 or less is the beginning
  bool isLive = true;
  bool supportsTimeshift = false;
  bool inTimeshiftMode = false;
};

}  // namespace vantro
