#include "shell/fullscreen_placement.h"

namespace vantro {

namespace {

constexpr int kSmallestWidth = 640;
constexpr int kSmallestHeight = 360;
constexpr FullscreenPlacement kDefaultPlacement{100, 100, 1280, 720, true};

}  // namespace

FullscreenPlacement PlacementAfterFullscreen(int savedLeft, int savedTop, int savedRight, int savedBottom) {
  const int width = savedRight - savedLeft;
  const int height = savedBottom - savedTop;
  if (width < kSmallestWidth || height < kSmallestHeight) return kDefaultPlacement;
  return {savedLeft, savedTop, width, height, false};
}

}  // namespace vantro
