#include "shell/fullscreen_placement.h"

#include "shell/window_metrics.h"

namespace vantro {

namespace {

constexpr FullscreenPlacement kDefaultPlacement{RectAt(100, 100, {kInitialWindowWidth, kInitialWindowHeight}), true};

}  // namespace

FullscreenPlacement PlacementAfterFullscreen(const Rect& saved) {
  if (saved.Width() < kMinimumWindowWidth || saved.Height() < kMinimumWindowHeight) return kDefaultPlacement;
  return {saved, false};
}

}  // namespace vantro
