// Reads the size of a player's picture and sets its scale through libvlc. Any thread.
#pragma once

#include "player/libvlc_functions.h"

namespace vantro {

// In pixels; 0 while the size is unknown, and if the library lacks the functions.
struct VideoSize {
  unsigned width;
  unsigned height;
};
VideoSize ReadVideoSize(const LibVlcFunctions& vlc, libvlc_media_player_t* player);

// Returns the largest factor at which the player's whole picture fits into the given size in pixels; 0 while a size is
// unknown.
float FitVideoScale(libvlc_media_player_t* player, int width, int height);
// With 0, libvlc chooses the scale.
void SetVideoScale(libvlc_media_player_t* player, float scale);

}  // namespace vantro
