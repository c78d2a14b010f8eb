#include "shell/fullscreen_placement.h"

#include "shell/window_metrics.h"

namespace vantro {

namespace {

constexpr FullscreenPlacement kDefaultPlacement{100, 100, kInitialWindowWidth, kInitialWindowHeight, true};

}  // namespace

FullscreenPlacement PlacementAfterFullscreen(int savedLeft, int savedTop, int savedRight, int savedBottom) {
  const int width = savedRight - savedLeft;
  const int height = savedBottom - savedTop;
  if (width < kMinimumWindowWidth || height < kMinimumWindowHeight) return kDefaultPlacement;
  return {savedLeft, savedTop, width, height, false};
}

}  // namespace vantro
