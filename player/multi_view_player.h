// The record of one tile of the grid.
#pragma once

#include <windows.h>

#include <string>

#include "player/libvlc_api.h"
#include "player/stall_decisions.h"

namespace vantro {

// Movable, not copyable. Destroying a record, or moving another one into it, releases its player but does not destroy
// its window. Only TileMaker::DestroyPlayerWindow destroys windows.
struct MultiViewPlayer {
  HWND window = nullptr;
  VlcMediaPlayerPtr mediaPlayer;
  std::string name;         // shown in the log
  std::string url;          // the stall watchdog reloads it
  bool isOriginal = false;  // the tile took over the single view's player and window
  StallState stall;
};

}  // namespace vantro
