// The place of a window that leaves fullscreen, as a decision over plain values. Screen pixels.
#pragma once

#include "common/geometry.h"

namespace vantro {

struct FullscreenPlacement {
  Rect place;
  bool usesDefaults;  // the saved rectangle was too small to go back to

  bool operator==(const FullscreenPlacement&) const = default;
};

// Returns the saved outer rectangle, or 1280 by 720 at 100, 100 if the saved one is less than 640 wide or less than 360
// high.
FullscreenPlacement PlacementAfterFullscreen(const Rect& saved);

}  // namespace vantro
