// The size of a player's picture and its scale, asked of and told to libvlc. Any thread.
#pragma once

#include "player/libvlc_functions.h"

namespace vantro {

// Pixels; 0 while it is not known, and where the library can't tell it.
struct VideoSize {
  unsigned width;
  unsigned height;
};
VideoSize ReadVideoSize(const LibVlcFunctions& vlc, libvlc_media_player_t* player);

// The factor by which the player's whole picture fits the size in pixels; 0 while a size is not known.
float FitVideoScale(libvlc_media_player_t* player, int width, int height);
// 0 lets libvlc choose.
void SetVideoScale(libvlc_media_player_t* player, float scale);

}  // namespace vantro
