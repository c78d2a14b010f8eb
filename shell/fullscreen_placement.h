// Where a window goes when it leaves fullscreen, over plain values. Pixels of the screen.
#pragma once

#include "common/geometry.h"

namespace vantro {

struct FullscreenPlacement {
  Rect place;
  bool usesDefaults;  // the saved rectangle was too small to go back to

  bool operator==(const FullscreenPlacement&) const = default;
};

// Back to the saved outer rectangle, or to 1280 by 720 at 100, 100 if that is narrower than 640 or lower than 360.
FullscreenPlacement PlacementAfterFullscreen(const Rect& saved);

}  // namespace vantro
