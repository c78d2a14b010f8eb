// The record of one tile of the grid.
#pragma once

#include <windows.h>

#include <string>

#include "player/libvlc_api.h"
#include "player/stall_decisions.h"

namespace vantro {

// Moved, never copied. Destroying a record, or moving onto it, releases its player and leaves its window alone: windows
// go through TileMaker::DestroyPlayerWindow only.
struct MultiViewPlayer {
  HWND window = nullptr;
  VlcMediaPlayerPtr mediaPlayer;
  std::string name;         // shown in the log
  std::string url;          // what the stall watchdog reloads
  bool isOriginal = false;  // the tile took over the single view's player and window
  StallState stall;
};

}  // namespace vantro
